#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <sstream>

#include "mac.h"
#include "worlds.h"

namespace joined {
namespace {

constexpr const char* accepted = "{\"ok\":true}";
constexpr const char* stopped =
    "1 {\"error\":\"native screen sharing stopped; background input is disabled\",\"ok\":false}\n";
constexpr const char* notesHeld =
    "{\"ok\":true,\"reply\":{\"focusPid\":41,\"focusWindow\":7,\"ok\":true}}";
constexpr const char* notesClicked =
    "{\"ok\":true,\"reply\":{\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}}";

std::string open(const std::string& session, const std::string& app) {
  return R"({"op":"open","session":")" + session + R"(","app":")" + app + "\"}";
}
std::string request(const std::string& op, const std::string& session) {
  return R"({"op":")" + op + R"(","session":")" + session + "\"}";
}
std::string command(const std::string& session, const std::string& arguments) {
  return R"({"op":"command","session":")" + session + R"(","args":[)" + arguments + "]}";
}
const std::string holdNotes = command("n", R"("bg-focus-hold","Notes")");
const std::string clickNotes = command("n", R"("bg-click","Notes","130","95")");

/// A capture service as a process of its own, which has written its first line.
class Service {
 public:
  Service(const ServedMac& mac, const std::string& lock)
      : process_(driverCommand({"capture-service", lock}), mac.environment()) {
    const std::string line = process_.readLine();
    EXPECT_EQ(line.rfind("{\"ok\":true,\"pid\":", 0), 0U) << line;
    pid_ = line.substr(17, line.size() - 18);
  }

  /// Its process id on the simulated Mac.
  const std::string& pid() const { return pid_; }
  Process& process() { return process_; }

  /// Asks for something and gives the reply.
  std::string ask(const std::string& line) {
    process_.write(line + "\n");
    return process_.readLine();
  }

  std::string shared(int target, int window) const {
    return "{\"ok\":true,\"pid\":" + pid_ +
           ",\"sharing\":true,\"targetPid\":" + std::to_string(target) +
           ",\"windowId\":" + std::to_string(window) + "}";
  }

 private:
  Process process_;
  std::string pid_;
};

class capture_service_process : public testing::Test {
 protected:
  capture_service_process() : mac_(notes) {}

  std::string lock(const std::string& name = "lock") const { return folder_.path(name); }

  /// Whether somebody could have the lock now.
  bool isFree() const {
    const int descriptor = ::open(lock().c_str(), O_RDWR | O_CLOEXEC);
    const bool free = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    close(descriptor);
    return free;
  }

  std::string violations() const { return seen(mac_.command({"violations"})); }
  std::string journal() const { return mac_.command({"journal", "--text"}).output; }

  Folder folder_;
  ServedMac mac_;
};

TEST_F(capture_service_process, serves_a_whole_session) {
  Service service(mac_, lock());

  EXPECT_EQ(service.ask(open("n", "Notes")), service.shared(41, 7));
  EXPECT_EQ(service.ask(open("m", "Mail")), service.shared(42, 8));
  EXPECT_EQ(service.ask(holdNotes), notesHeld);
  EXPECT_EQ(service.ask(clickNotes), notesClicked);
  EXPECT_EQ(service.ask(request("refresh", "n")), service.shared(41, 7));
  EXPECT_EQ(service.ask(request("close", "n")), accepted);
  EXPECT_EQ(seen(service.process().finish()), "0 ");
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

TEST_F(capture_service_process, is_the_only_one_of_its_lock) {
  Service first(mac_, lock());

  EXPECT_EQ(seen(mac_.driver({"capture-service", lock()})),
            "1 {\"error\":\"capture service already running\",\"ok\":false}\n");
  EXPECT_EQ(first.ask(open("n", "Notes")), first.shared(41, 7));

  Service other(mac_, lock("other"));
  EXPECT_EQ(other.ask(open("n", "Mail")), other.shared(42, 8));
  EXPECT_EQ(seen(first.process().finish()), "0 ");
  EXPECT_TRUE(isFree());
  EXPECT_EQ(other.ask(request("refresh", "n")), other.shared(42, 8));
}

TEST_F(capture_service_process, leaves_its_lock_to_no_child_and_makes_it_private) {
  Service service(mac_, lock());

  const std::string links = "/proc/" + std::to_string(service.process().pid()) + "/fd";
  bool found = false;
  for (const auto& link : std::filesystem::directory_iterator(links)) {
    if (std::filesystem::read_symlink(link.path()) != lock()) continue;
    found = true;
    std::ifstream info("/proc/" + std::to_string(service.process().pid()) + "/fdinfo/" +
                       link.path().filename().string());
    std::stringstream text;
    text << info.rdbuf();
    const std::string flags = text.str().substr(text.str().find("flags:") + 7);
    EXPECT_NE(std::stol(flags, nullptr, 8) & O_CLOEXEC, 0) << text.str();
  }
  EXPECT_TRUE(found);
  EXPECT_EQ(std::filesystem::status(lock()).permissions(),
            std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

TEST_F(capture_service_process, lets_runs_beside_it_use_the_focus_it_holds) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(holdNotes);
  const std::string before = journal();

  const Finished run = mac_.driver({"bg-click", "Notes", "130", "95"},
                                   {{"CU_CAPTURE_PID", service.pid()}, {"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(run), "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  EXPECT_EQ(journal().substr(before.size()).find("focus"), std::string::npos);
  EXPECT_EQ(seen(service.process().finish()), "0 ");
  EXPECT_NE(journal().find("focus 41/7 take"), std::string::npos);
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

TEST_F(capture_service_process, is_named_in_the_state_with_what_it_holds) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(holdNotes);
  const auto held = [&] {
    const std::string state = mac_.command({"state"}).output;
    const std::size_t focus = state.find("\"focus\"");
    const std::size_t sharing = state.find("\"sharing\"");
    return state.substr(focus, state.find(",\"front\"") - focus) + "\n" +
           state.substr(sharing, state.find(",\"taps\"") - sharing);
  };

  EXPECT_EQ(
      held(),
      R"("focus":[{"application":{"name":"Notes","pid":41},"by":{"alive":true,"pid":5000000},)"
      R"("keyWindow":7,"window":7}])"
      "\n"
      R"("sharing":[{"by":{"alive":true,"pid":5000000},"frames":1,"target":41,"window":7}])");
  service.process().signal(SIGKILL);
  service.process().finish();
  EXPECT_EQ(
      held(),
      R"("focus":[{"application":{"name":"Notes","pid":41},"by":{"alive":false,"pid":5000000},)"
      R"("keyWindow":7,"window":7}])"
      "\n"
      R"("sharing":[])");
}

TEST_F(capture_service_process, after_its_death_every_run_is_refused) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(holdNotes);

  service.process().signal(SIGKILL);

  EXPECT_EQ(seen(service.process().finish()), "137 ");
  EXPECT_TRUE(isFree());
  EXPECT_EQ(seen(mac_.driver({"bg-click", "Notes", "130", "95"},
                             {{"CU_CAPTURE_PID", service.pid()}, {"CU_FOCUS_PID", "41"}})),
            stopped);
  EXPECT_EQ(violations(),
            "0 {\"ok\":true,\"violations\":[\"I27: focus is held in window 7 of Notes by process "
            "5000000, "
            "which was killed\"]}\n");
  EXPECT_EQ(seen(mac_.driver({"focus-release", "41", "7"})), "0 {\"ok\":true}\n");
  EXPECT_NE(journal().find("focus 41/7 take"), std::string::npos);
  EXPECT_NE(journal().find("sharing 41/7 gone with its process"), std::string::npos);
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
  Service next(mac_, lock());
  EXPECT_EQ(next.ask(open("n", "Notes")), next.shared(41, 7));
}

class capture_service_signal : public capture_service_process,
                               public testing::WithParamInterface<int> {};

TEST_P(capture_service_signal, gives_held_focus_back_and_dies_by_it) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(holdNotes);

  service.process().signal(GetParam());
  service.process().readLine();  // to the end: its input stays open until then

  EXPECT_EQ(seen(service.process().finish()), std::to_string(128 + GetParam()) + " ");
  EXPECT_NE(journal().find("focus 41/7 take"), std::string::npos);
  EXPECT_TRUE(isFree());
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

INSTANTIATE_TEST_SUITE_P(signals, capture_service_signal, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(capture_service_process, ends_when_nobody_reads_its_replies) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(holdNotes);

  service.process().closeOutput();
  service.process().write(request("refresh", "n") + "\n");

  EXPECT_EQ(seen(service.process().finish()), "1 ");
  EXPECT_NE(journal().find("focus 41/7 take"), std::string::npos);
  EXPECT_TRUE(isFree());
}

TEST_F(capture_service_process, ends_when_its_sharing_is_stopped) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  service.ask(open("m", "Mail"));

  EXPECT_EQ(seen(mac_.command({"stop", "sharing", "Mail", "no more"})), "0 {\"ok\":true}\n");

  EXPECT_EQ(seen(service.process().finish()),
            "1 {\"error\":\"native screen sharing stopped: no more\",\"ok\":false,"
            "\"sharing\":false}\n");
  EXPECT_EQ(seen(mac_.driver({"session"}, {{"CU_CAPTURE_PID", service.pid()}})), stopped);
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

TEST_F(capture_service_process, does_not_wait_for_a_reader_that_takes_nothing) {
  Service service(mac_, lock());
  service.ask(open("n", "Notes"));
  constexpr int requests = 2000;  // whose replies no pipe holds
  std::string lines;
  for (int i = 0; i < requests; ++i) lines += request("refresh", "n") + "\n";
  std::string held;
  while (held.size() < lines.size()) {
    const std::string part = lines.substr(held.size(), 4000);
    service.process().write(part);
    held += part;
    // Once its replies fill the pipe it reads no more, and so is its own input.
    if (held.size() > 90'000) break;
  }

  EXPECT_EQ(seen(mac_.command({"stop", "sharing", "Notes"})), "0 {\"ok\":true}\n");

  EXPECT_EQ(kill(service.process().pid(), 0), 0);
  const Finished end = service.process().finish();
  EXPECT_EQ(end.status, 1);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

TEST_F(capture_service_process, holds_many_sessions) {
  Service service(mac_, lock());
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(service.ask(open(std::to_string(i), i % 2 == 0 ? "Notes" : "Mail")),
              i % 2 == 0 ? service.shared(41, 7) : service.shared(42, 8));
  }
  for (int i = 0; i < 100; ++i) {
    EXPECT_EQ(service.ask(request("close", std::to_string(i))), accepted);
  }
  EXPECT_EQ(seen(service.process().finish()), "0 ");
}

TEST_F(capture_service_process, killed_at_any_moment_leaves_the_lock_free_and_no_rule_broken) {
  const std::string lines = open("n", "Notes") + "\n" + holdNotes + "\n" + clickNotes + "\n" +
                            request("close", "n") + "\n";
  for (int round = 0; round < 20; ++round) {
    Service service(mac_, lock());
    service.process().write(lines);
    for (int i = 0; i < round % 5; ++i) service.process().readLine();
    service.process().signal(round % 2 == 0 ? SIGKILL : SIGTERM);
    if (round % 4 == 3) service.process().readLine();
    const Finished end = service.process().finish();
    EXPECT_EQ(end.errors, "");
    // Only who cannot catch the signal may die between a line and its end.
    const bool isWhole = end.output.empty() || end.output.back() == '\n';
    EXPECT_TRUE(isWhole || end.status == 128 + SIGKILL) << end.output;
    EXPECT_TRUE(isFree());
  }
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

TEST_F(capture_service_process, is_driven_by_a_client_in_another_language) {
  const std::string client = std::string(DRIVER_SOURCE_DIR) + "/tests/joined/service_client.py";

  const Finished run = joined::run({"python3", client, driverPath(), lock()}, mac_.environment());

  EXPECT_EQ(seen(run), "0 the whole session went as expected\n");
  EXPECT_EQ(violations(), std::string("0 ") + noViolations);
}

/// The lines of the protocol's page that are a transcript: "> " what a client sends, "< " what it
/// gets.
std::vector<std::string> transcript() {
  std::ifstream page(std::string(DRIVER_SOURCE_DIR) + "/docs/PROTOCOL.md");
  std::vector<std::string> lines;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("> {", 0) == 0 || line.rfind("< {", 0) == 0) lines.push_back(line);
  }
  return lines;
}

TEST(protocol_page, tells_a_session_as_it_is) {
  std::ifstream file(std::string(DRIVER_SOURCE_DIR) + "/demo/desk.world");
  std::stringstream world;
  world << file.rdbuf();
  const ServedMac mac(world.str());
  const Folder folder;
  Process service(driverCommand({"capture-service", folder.path("lock")}), mac.environment());
  const std::vector<std::string> lines = transcript();
  ASSERT_GT(lines.size(), 10U);

  for (const std::string& line : lines) {
    if (line.front() == '>') {
      service.write(line.substr(2) + "\n");
    } else {
      EXPECT_EQ("< " + service.readLine(), line);
    }
  }
  EXPECT_EQ(seen(service.finish()), "1 ");
}

}  // namespace
}  // namespace joined
