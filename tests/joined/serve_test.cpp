#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <filesystem>
#include <memory>

#include "mac.h"
#include "worlds.h"

namespace joined {
namespace {

std::vector<std::string> serveCommand(const std::string& world,
                                      const std::vector<std::string>& options) {
  std::vector<std::string> command = {simulatedMacPath(), "serve", world};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

class serve_until : public testing::TestWithParam<int> {};

TEST_P(serve_until, a_signal_and_removes_its_socket) {
  const Folder folder;
  const std::string socket = folder.path("socket");
  Process process(serveCommand(folder.file("world", notes), {"--socket", socket}));
  EXPECT_EQ(process.readLine(), socket);
  struct stat status {};
  ASSERT_EQ(stat(socket.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0077U, 0U);

  process.signal(GetParam());

  EXPECT_EQ(seen(process.finish()), "0 ");
  EXPECT_FALSE(std::filesystem::exists(socket));
}

INSTANTIATE_TEST_SUITE_P(signals, serve_until, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(serve, closes_its_output_after_the_one_line) {
  const Folder folder;
  const std::string world = folder.file("world", notes);
  const std::string script = "SIMULATED_MAC=$(" + simulatedMacPath() + " serve " + world +
                             " & echo $! > " + folder.path("pid") + "); export SIMULATED_MAC; " +
                             driverPath() + " session; kill $(cat " + folder.path("pid") + ")";

  EXPECT_EQ(seen(run({"sh", "-c", script})), unlocked);
}

TEST(serve, ends_with_its_standard_input_when_told_so) {
  const Folder folder;
  Process process(serveCommand(folder.file("world", notes), {"--until-closed"}));
  const std::string socket = process.readLine();
  process.write("this says nothing");
  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", socket}})), unlocked);

  EXPECT_EQ(seen(process.finish()), "0 ");  // closes the input
}

TEST(serve, takes_the_place_of_a_killed_one) {
  const Folder folder;
  const std::string world = folder.file("world", notes);
  const std::string socket = folder.path("socket");
  Process killed(serveCommand(world, {"--socket", socket}));
  killed.readLine();
  killed.signal(SIGKILL);
  EXPECT_EQ(seen(killed.finish()), "137 ");

  Process second(serveCommand(world, {"--socket", socket}));
  EXPECT_EQ(second.readLine(), socket);
  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", socket}})), unlocked);
}

TEST(serve, does_not_disturb_one_that_runs) {
  const Folder folder;
  const std::string world = folder.file("world", notes);
  const std::string socket = folder.path("socket");
  Process first(serveCommand(world, {"--socket", socket}));
  first.readLine();

  EXPECT_EQ(
      seen(run(serveCommand(world, {"--socket", socket}))),
      "1 {\"error\":\"cannot listen at " + socket + ": Address already in use\",\"ok\":false}\n");
  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", socket}})), unlocked);
}

TEST(serve, leaves_a_file_in_its_way_alone) {
  const Folder folder;
  const std::string socket = folder.file("socket", "precious");

  EXPECT_EQ(
      seen(run(serveCommand(folder.file("world", notes), {"--socket", socket}))),
      "1 {\"error\":\"cannot listen at " + socket + ": Address already in use\",\"ok\":false}\n");
  EXPECT_EQ(std::filesystem::file_size(socket), 8U);
}

TEST(serve, refuses_a_name_that_is_too_long) {
  const Folder folder;
  const std::string socket(200, 'x');

  EXPECT_EQ(seen(run(serveCommand(folder.file("world", notes), {"--socket", socket}))),
            "1 {\"error\":\"no socket can have the name \\\"" + socket + "\\\"\",\"ok\":false}\n");
}

TEST(serve, fifty_macs_do_not_disturb_one_another) {
  std::vector<std::unique_ptr<ServedMac>> macs;
  for (int i = 0; i < 50; ++i) macs.push_back(std::make_unique<ServedMac>(notes));

  for (std::size_t i = 0; i < macs.size(); ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(seen(macs[i]->command({"user", "move", number + "," + number})), "0 {\"ok\":true}\n");
  }

  for (std::size_t i = 0; i < macs.size(); ++i) {
    const std::string number = std::to_string(i);
    EXPECT_EQ(seen(macs[i]->driver({"scene"})),
              "0 {\"bundleId\":\"com.example.browser\",\"ok\":true,\"pid\":40,\"x\":" + number +
                  ",\"y\":" + number + "}\n");
  }
}

}  // namespace
}  // namespace joined
