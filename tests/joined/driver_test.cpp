#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <fstream>
#include <iterator>
#include <memory>

#include "mac.h"
#include "wire.h"
#include "worlds.h"

namespace joined {
namespace {

TEST(driver, answers_for_the_mac_it_joins) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.driver({"session"})), "0 {\"locked\":false,\"ok\":true,\"onConsole\":true}\n");
  EXPECT_EQ(seen(mac.driver({"permissions"})),
            "0 {\"accessibility\":true,\"ok\":true,\"screenRecording\":true}\n");
  EXPECT_EQ(seen(mac.driver({"scene"})),
            "0 {\"bundleId\":\"com.example.browser\",\"ok\":true,\"pid\":40,\"x\":0,\"y\":0}\n");
  EXPECT_EQ(seen(mac.driver({"windows", "Notes"})),
            "0 {\"active\":false,\"bundleId\":\"com.example.notes\",\"name\":\"Notes\",\"ok\":true,"
            "\"pid\":41,\"running\":true,\"windows\":[{\"height\":600,\"id\":7,\"layer\":0,"
            "\"title\":\"Inbox\",\"width\":800,\"x\":100,\"y\":80}]}\n");
  EXPECT_EQ(seen(mac.driver({"windows", "Nobody"})),
            "0 {\"ok\":true,\"running\":false,\"windows\":[]}\n");
}

TEST(driver, has_its_own_environment) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.driver({"windows", "Notes"}, {{"CU_WINDOW", "outbox"}})),
            "0 {\"active\":false,\"bundleId\":\"com.example.notes\",\"name\":\"Notes\",\"ok\":true,"
            "\"pid\":41,\"running\":true,\"windows\":[]}\n");
}

TEST(driver, fails_with_one_line_and_status_1) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.driver({})), "1 {\"error\":\"usage: driver <command> ...\",\"ok\":false}\n");
  EXPECT_EQ(seen(mac.driver({"frobnicate"})),
            "1 {\"error\":\"unknown command: frobnicate\",\"ok\":false}\n");
}

TEST(driver, without_a_mac_says_how_to_start_one) {
  EXPECT_EQ(seen(run(driverCommand({"session"}))),
            "1 {\"error\":\"no simulated Mac to join: set SIMULATED_MAC to the socket that "
            "\\\"simulated-mac serve WORLD\\\" prints, or run this command under "
            "\\\"simulated-mac run WORLD -- COMMAND\\\"\",\"ok\":false}\n");
  EXPECT_EQ(seen(run(driverCommand({}))),
            "1 {\"error\":\"usage: driver <command> ...\",\"ok\":false}\n");
}

TEST(driver, says_when_nobody_listens) {
  const std::string rest =
      "; \\\"simulated-mac serve WORLD\\\" starts one and prints its socket, and "
      "\\\"simulated-mac run WORLD -- COMMAND\\\" runs a command with one\",\"ok\":false}\n";

  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", "@nobody"}})),
            "1 {\"error\":\"no simulated Mac at @nobody" + rest);
  EXPECT_EQ(seen(run(driverCommand({"session"}), {{"SIMULATED_MAC", "missing"}})),
            "1 {\"error\":\"no simulated Mac at missing" + rest);
}

TEST(driver, says_when_the_mac_is_killed) {
  ServedMac mac(notes);
  const Wire first(mac.socket());
  first.join();
  first.receive();
  Process driver(driverCommand({"session"}), mac.environment());
  first.awaitProcess(joinedPid(1));

  mac.process().signal(SIGKILL);

  EXPECT_EQ(seen(driver.finish()),
            "1 {\"error\":\"the simulated Mac at " + mac.socket() + " has gone\",\"ok\":false}\n");
}

/// Runs "driver session" on a Mac that goes when the driver makes this call for the `which`th time.
Finished sessionOnMacThatGoes(std::int64_t function, int which) {
  const ServedMac mac(notes);
  const Wire wire(mac.socket());
  const Folder folder;
  const WireMac relay(folder.path("relay"));
  Process driver(driverCommand({"session"}), {{"SIMULATED_MAC", folder.path("relay")}});
  {
    const auto connection = relay.accept();
    while (true) {
      const std::string message = connection->receive();
      if (message == "closed" || (functionOf(message) == function && --which == 0)) break;
      connection->send(frame(wire.exchange(message)));
    }
  }
  return driver.finish();
}

TEST(driver, replies_once_when_the_mac_goes_in_the_middle_of_its_reply) {
  const std::string reply = "0 {\"locked\":false,\"ok\":true,\"onConsole\":true}\n";

  EXPECT_EQ(seen(sessionOnMacThatGoes(writeOutputFunction, 2)), reply);
  EXPECT_EQ(seen(sessionOnMacThatGoes(exitFunction, 1)), reply);
}

TEST(driver, that_cannot_write_its_reply_breaks_no_rule) {
  const ServedMac mac(notes);

  for (const char* output : {"&-", "/dev/full"}) {
    const std::string command = std::string("exec \"$0\" session >") + output;
    EXPECT_EQ(seen(run({"/bin/sh", "-c", command, driverPath()}, mac.environment())), "0 ");
  }

  EXPECT_EQ(seen(mac.command({"violations"})), "0 {\"ok\":true,\"violations\":[]}\n");
}

TEST(driver, clicks_in_the_background_in_virtual_time) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.driver({"bg-click", "Notes", "130", "95"})),
            "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  EXPECT_EQ(seen(mac.command({"journal", "--text"})),
            R"(0     0 ms  5000000  process joined driver bg-click Notes 130 95
    0 ms  5000000  capture 41/7 window
    0 ms  5000000  focus 41/7 give
   40 ms  5000000  post 41/7 moved -1,-1 private: priming
   67 ms  5000000  post 41/7 left-down -1,-1 private: priming
   80 ms  5000000  post 41/7 left-up -1,-1 private: priming
  192 ms  5000000  post 41/7 moved 130,95 private: priming
  219 ms  5000000  post 41/7 left-down 130,95 private: press
  232 ms  5000000  post 41/7 left-up 130,95 private: pressed AXButton "Send"
  344 ms  5000000  focus 41/7 take
  584 ms  5000000  capture 41/7 window
  584 ms  5000000  reply "{"changed":true,"ok":true,"via":"background","window":7}"
  584 ms  5000000  process ended: status 0
)");
  EXPECT_EQ(seen(mac.command({"advance", "0s"})), "0 {\"now\":584.0,\"ok\":true}\n");
  EXPECT_EQ(seen(mac.command({"violations"})), "0 {\"ok\":true,\"violations\":[]}\n");
}

TEST(driver, shares_virtual_time_with_another) {
  const ServedMac mac(notes);
  auto first = std::make_unique<Wire>(mac.socket());
  first->join();
  first->receive();
  Process notesClick(driverCommand({"bg-click", "Notes", "130", "95"}), mac.environment());
  first->awaitProcess(joinedPid(1));
  Process mailClick(driverCommand({"bg-click", "Mail", "930", "95"}), mac.environment());
  first->awaitProcess(joinedPid(2));

  first.reset();

  EXPECT_EQ(seen(notesClick.finish()),
            "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  EXPECT_EQ(seen(mailClick.finish()),
            "0 {\"changed\":false,\"ok\":true,\"via\":\"background\",\"window\":8}\n");
  EXPECT_EQ(seen(mac.command({"journal", "--text"})), R"(0     0 ms  5000000  process joined wire
    0 ms  5000001  process joined driver bg-click Notes 130 95
    0 ms  5000002  process joined driver bg-click Mail 930 95
    0 ms  5000000  process ended: gone, without a word
    0 ms  5000001  capture 41/7 window
    0 ms  5000001  focus 41/7 give
    0 ms  5000002  capture 42/8 window
    0 ms  5000002  focus 42/8 give
   40 ms  5000001  post 41/7 moved -1,-1 private: priming
   40 ms  5000002  post 42/8 moved -1,-1 private: priming
   67 ms  5000001  post 41/7 left-down -1,-1 private: priming
   67 ms  5000002  post 42/8 left-down -1,-1 private: priming
   80 ms  5000001  post 41/7 left-up -1,-1 private: priming
   80 ms  5000002  post 42/8 left-up -1,-1 private: priming
  192 ms  5000001  post 41/7 moved 130,95 private: priming
  192 ms  5000002  post 42/8 moved 930,95 private: priming
  219 ms  5000001  post 41/7 left-down 130,95 private: press
  219 ms  5000002  post 42/8 left-down 930,95 private: press
  232 ms  5000001  post 41/7 left-up 130,95 private: pressed AXButton "Send"
  232 ms  5000002  post 42/8 left-up 930,95 private: clicked AXButton "New", which does nothing
  344 ms  5000001  focus 41/7 take
  344 ms  5000002  focus 42/8 take
  584 ms  5000001  capture 41/7 window
  584 ms  5000001  reply "{"changed":true,"ok":true,"via":"background","window":7}"
  584 ms  5000001  process ended: status 0
  584 ms  5000002  capture 42/8 window
  784 ms  5000002  capture 42/8 window
  984 ms  5000002  capture 42/8 window
  984 ms  5000002  reply "{"changed":false,"ok":true,"via":"background","window":8}"
  984 ms  5000002  process ended: status 0
)");
  EXPECT_EQ(seen(mac.command({"advance", "0s"})), "0 {\"now\":984.0,\"ok\":true}\n");
  EXPECT_EQ(seen(mac.command({"violations"})), "0 {\"ok\":true,\"violations\":[]}\n");
}

TEST(driver, takes_its_time_on_a_mac_in_real_time) {
  const ServedMac mac(notes, {});
  const auto start = std::chrono::steady_clock::now();

  const Finished click = mac.driver({"bg-click", "Notes", "130", "95"});

  EXPECT_EQ(seen(click), "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n");
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(584));
}

TEST(driver, withholds_input_from_a_locked_mac) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"lock"})), "0 {\"ok\":true}\n");

  EXPECT_EQ(seen(mac.driver({"bg-click", "Notes", "130", "95"})),
            "1 {\"error\":\"the Mac is locked or not on console; background input is "
            "unavailable\",\"ok\":false}\n");
  EXPECT_EQ(seen(mac.command({"journal"})),
            "0 "
            "{\"at\":0.0,\"kind\":\"happening\",\"number\":1,\"what\":\"lock\"}\n{\"arguments\":["
            "\"driver\",\"bg-click\",\"Notes\",\"130\",\"95\"],\"at\":0.0,\"kind\":\"process\","
            "\"number\":2,\"pid\":5000000,\"variables\":[],\"what\":\"joined\"}\n{\"at\":0.0,"
            "\"kind\":\"reply\",\"number\":3,\"pid\":5000000,\"text\":\"{\\\"error\\\":\\\"the Mac "
            "is locked or not on console; background input is "
            "unavailable\\\",\\\"ok\\\":false}\"}\n{\"at\":0.0,\"kind\":\"process\",\"number\":4,"
            "\"outcome\":\"status 1\",\"pid\":5000000,\"what\":\"ended\"}\n");
}

TEST(driver, writes_the_picture_it_is_asked_for) {
  const ServedMac mac(notes);
  const Folder folder;
  const std::string path = folder.path("notes.png");

  EXPECT_EQ(mac.driver({"capture", "Notes", path}).status, 0);

  std::ifstream file(path, std::ios::binary);
  const std::string bytes((std::istreambuf_iterator<char>(file)), {});
  EXPECT_EQ(bytes.substr(0, 8), "\x89PNG\r\n\x1a\n");
}

TEST(driver, may_leave_a_button_down_when_the_service_has_gone_whether_it_is_read_or_not) {
  const ServedMac mac(std::string(notes) + "process 900\nat 225ms end process 900\n");

  const Finished finished = run({"/bin/sh", "-c", "\"$0\" bg-click Notes 130 95 | :", driverPath()},
                                mac.environment({{"CU_CAPTURE_PID", "900"}}));

  EXPECT_EQ(seen(finished), "0 ");
  EXPECT_EQ(seen(mac.command({"violations"})), std::string("0 ") + noViolations);
}

}  // namespace
}  // namespace joined
