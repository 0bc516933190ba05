#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <cstdlib>

#include "mac.h"
#include "worlds.h"

namespace joined {
namespace {

/// "simulated-mac run --virtual WORLD -- COMMAND".
std::vector<std::string> runCommand(const std::string& world,
                                    const std::vector<std::string>& command) {
  std::vector<std::string> words = {simulatedMacPath(), "run", "--virtual", world, "--"};
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

TEST(run, passes_on_the_exit_status) {
  const Folder folder;
  const std::string world = folder.file("world", notes);

  EXPECT_EQ(seen(run(runCommand(world, {"sh", "-c", "exit 7"}))), "7 ");
  EXPECT_EQ(seen(run(runCommand(world, {"true"}))), "0 ");
  EXPECT_EQ(seen(run(runCommand(world, {"sh", "-c", "kill -TERM $$"}))), "143 ");
}

TEST(run, gives_the_command_a_mac) {
  const Folder folder;
  const std::string world = folder.file("world", notes);

  EXPECT_EQ(seen(run(runCommand(world, driverCommand({"session"})))),
            "0 {\"locked\":false,\"ok\":true,\"onConsole\":true}\n");
  EXPECT_EQ(seen(run(runCommand(world, driverCommand({"frobnicate"})))),
            "1 {\"error\":\"unknown command: frobnicate\",\"ok\":false}\n");
}

TEST(run, leaves_to_chance_what_the_seed_says_and_gives_the_same_again) {
  const Folder folder;
  const auto traced = [&](const char* seed) {
    std::vector<std::string> command = {
        simulatedMacPath(),
        "run",
        "--virtual",
        "--seed",
        seed,
        folder.file("world", notes),
        "--",
        "sh",
        "-c",
        driverPath() + " windows Notes > /dev/null; " + simulatedMacPath() + " trace --text"};
    return seen(run(command));
  };
  EXPECT_EQ(traced("7"), traced("7"));
  EXPECT_NE(traced("7"), traced("8"));
}

TEST(run, reads_the_world_from_standard_input) {
  EXPECT_EQ(seen(run(runCommand("-", driverCommand({"session"})), {}, notes)),
            "0 {\"locked\":false,\"ok\":true,\"onConsole\":true}\n");
}

TEST(run, leaves_standard_input_to_the_command) {
  const Folder folder;

  EXPECT_EQ(seen(run(runCommand(folder.file("world", notes), {"cat"}), {}, "to be read\n")),
            "0 to be read\n");
}

TEST(run, says_what_is_wrong_with_a_world) {
  const Folder folder;
  const std::string path = folder.file("world", "display 1 1440x900\nfrob\n");
  const Finished finished = run(runCommand(path, {"true"}));

  EXPECT_EQ(seen(finished).substr(0, seen(finished).find("line 2: ") + 8),
            "1 {\"error\":\"" + path + ", line 2: ");
  EXPECT_EQ(seen(run(runCommand(folder.path("none"), {"true"}))),
            "1 {\"error\":\"cannot read " + folder.path("none") +
                ": No such file or directory\",\"ok\":false}\n");
}

TEST(run, says_when_the_command_cannot_be_run) {
  const Folder folder;

  EXPECT_EQ(seen(run(runCommand(folder.file("world", notes), {folder.path("none")}))),
            "127 {\"error\":\"cannot run " + folder.path("none") +
                ": No such file or directory\",\"ok\":false}\n");
  const std::string path = folder.file("text", "no program");
  EXPECT_EQ(seen(run(runCommand(folder.file("world", notes), {path}))),
            "126 {\"error\":\"cannot run " + path + ": Permission denied\",\"ok\":false}\n");
}

TEST(run, passes_a_signal_on) {
  const Folder folder;
  Process process(runCommand(folder.file("world", notes),
                             {"sh", "-c", "trap 'echo stopped; exit 3' TERM; echo ready; read x"}));
  EXPECT_EQ(process.readLine(), "ready");

  process.signal(SIGTERM);

  EXPECT_EQ(process.readLine(), "stopped");
  EXPECT_EQ(seen(process.finish()), "3 ");
}

TEST(run, leaves_no_process_and_no_socket_when_it_is_killed) {
  // The orphaned command becomes this process's child, which so learns of its end.
  prctl(PR_SET_CHILD_SUBREAPER, 1);
  const Folder folder;
  Process process(runCommand(folder.file("world", notes),
                             {"sh", "-c", "echo $$; echo $SIMULATED_MAC; exec sleep 1000"}));
  const pid_t command = std::atoi(process.readLine().c_str());
  const std::string socket = process.readLine();

  process.signal(SIGKILL);

  EXPECT_EQ(seen(process.finish()), "137 ");
  int status = 0;
  EXPECT_EQ(waitpid(command, &status, 0), command);
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  EXPECT_EQ(seen(run({simulatedMacPath(), "lock"}, {{"SIMULATED_MAC", socket}})),
            "1 {\"error\":\"no simulated Mac at " + socket + "\",\"ok\":false}\n");
}

}  // namespace
}  // namespace joined
