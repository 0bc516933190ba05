#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "mac.h"
#include "wire.h"
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

  EXPECT_EQ(seen(run(serveCommand(world, {"--socket", socket}))),
            "1 STANDARD ERROR: {\"error\":\"cannot listen at " + socket +
                ": Address already in use\",\"ok\":false}\n");
  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", socket}})), unlocked);
}

TEST(serve, leaves_a_file_in_its_way_alone) {
  const Folder folder;
  const std::string socket = folder.file("socket", "precious");

  EXPECT_EQ(seen(run(serveCommand(folder.file("world", notes), {"--socket", socket}))),
            "1 STANDARD ERROR: {\"error\":\"cannot listen at " + socket +
                ": Address already in use\",\"ok\":false}\n");
  EXPECT_EQ(std::filesystem::file_size(socket), 8U);
}

TEST(serve, refuses_a_name_that_is_too_long) {
  const Folder folder;
  const std::string socket(200, 'x');

  EXPECT_EQ(seen(run(serveCommand(folder.file("world", notes), {"--socket", socket}))),
            "1 STANDARD ERROR: {\"error\":\"no socket can have the name \\\"" + socket +
                "\\\"\",\"ok\":false}\n");
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

TEST(serve, ends_when_it_is_told_to_stop) {
  ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"stop"})), "0 {\"ok\":true}\n");
  EXPECT_EQ(seen(mac.process().finish()), "0 ");
  EXPECT_EQ(seen(mac.command({"stop"})),
            "1 {\"error\":\"no simulated Mac at " + mac.socket() + "\",\"ok\":false}\n");
}

TEST(serve, is_stopped_by_no_command_of_its_run) {
  const Folder folder;
  const std::string world = folder.file("world", notes);

  EXPECT_EQ(
      seen(run({simulatedMacPath(), "run", world, "--", simulatedMacPath(), "stop"})),
      "1 {\"error\":\"this Mac ends with the command that it was started for\",\"ok\":false}\n");
}

TEST(serve, is_listed_while_it_runs_wherever_it_listens) {
  const Folder folder;
  const std::string path = folder.path("socket");
  const auto listed = [](const std::string& socket) {
    const std::string output = run({simulatedMacPath(), "list"}).output;
    return output.find("\"socket\":\"" + socket + "\",\"time\":\"virtual\"") != std::string::npos;
  };
  std::string name;
  {
    const ServedMac mac(notes);
    const ServedMac other(notes, {"--virtual", "--socket", path});
    name = mac.socket();
    EXPECT_TRUE(listed(name));
    EXPECT_TRUE(listed(path));
  }
  EXPECT_FALSE(listed(name));
  EXPECT_FALSE(listed(path));
}

constexpr uid_t strangersId = 65534;

/// Only root can be somebody else.
TEST(serve, tells_another_user_whose_it_is) {
  if (geteuid() != 0) GTEST_SKIP() << "not root";
  const ServedMac mac(notes);
  const auto asStranger = [&](const std::vector<std::string>& words) {
    std::vector<std::string> command = asAnotherUser;
    command.insert(command.end(), words.begin(), words.end());
    return seen(run(command, mac.environment()));
  };

  EXPECT_EQ(asStranger({simulatedMacPath(), "state"}), "1 {\"error\":\"the simulated Mac at " +
                                                           mac.socket() +
                                                           " is another user's\",\"ok\":false}\n");
  EXPECT_EQ(asStranger({simulatedMacPath(), "list"}), "0 ");
  EXPECT_EQ(asStranger({driverPath(), "session"}),
            failure("the simulated Mac at " + mac.socket() + " is another user's"));
}

TEST(serve, takes_nothing_from_another_user) {
  if (geteuid() != 0) GTEST_SKIP() << "not root";
  const ServedMac mac(notes);
  ASSERT_EQ(seteuid(strangersId), 0);
  const Wire stranger(mac.socket());
  ASSERT_EQ(seteuid(0), 0);

  stranger.send(frame(list({text("control"), text("lock")})));
  EXPECT_EQ(stranger.receive(), "closed");
  EXPECT_EQ(seen(mac.command({"journal"})), "0 ");
}

TEST(serve, tells_its_version) {
  EXPECT_EQ(run({simulatedMacPath(), "--version"}).output.rfind("simulated-mac ", 0), 0U);
}

}  // namespace
}  // namespace joined
