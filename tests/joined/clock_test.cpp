#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "mac.h"
#include "worlds.h"

/// Virtual time that somebody holds up who watches it.
namespace joined {
namespace {

std::string clockLine(const std::string& now, const std::string& pace) {
  return "0 {\"now\":" + now + ",\"ok\":true,\"pace\":" + pace + "}\n";
}

const std::string clicked =
    "0 {\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":7}\n";

/// A click in Notes, as it goes on beside.
class BackgroundClick {
 public:
  explicit BackgroundClick(const ServedMac& mac)
      : process_(driverCommand({"bg-click", "Notes", "130", "95"}), mac.environment()) {}

  /// Once the driver has joined, nothing is due until it goes on.
  static void awaitJoining(const ServedMac& mac) {
    while (mac.command({"journal"}).output.empty()) continue;
  }

  std::string result() { return seen(process_.finish()); }

 private:
  Process process_;
};

TEST(clock, tells_how_time_passes) {
  const ServedMac mac(notes);

  EXPECT_EQ(seen(mac.command({"clock"})), clockLine("0.0", "null"));
  EXPECT_EQ(seen(mac.command({"clock", "stop"})), clockLine("0.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"clock", "run", "2.5"})), clockLine("0.0", "2.5"));
  EXPECT_EQ(seen(mac.command({"clock", "run"})), clockLine("0.0", "null"));
  EXPECT_EQ(seen(mac.command({"clock", "step"})), clockLine("0.0", "0.0"));
}

TEST(clock, stands_while_it_is_stopped_and_goes_on_as_if_nothing_had_been) {
  const ServedMac mac(notes);
  mac.command({"clock", "stop"});
  BackgroundClick click(mac);
  BackgroundClick::awaitJoining(mac);

  EXPECT_EQ(seen(mac.command({"clock"})), clockLine("0.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"clock", "run"})), clockLine("0.0", "null"));
  EXPECT_EQ(click.result(), clicked);
  EXPECT_EQ(seen(mac.command({"clock"})), clockLine("584.0", "null"));
}

TEST(clock, steps_from_one_instant_at_which_anything_is_due_to_the_next) {
  const ServedMac mac(notes);
  mac.command({"clock", "stop"});
  BackgroundClick click(mac);
  BackgroundClick::awaitJoining(mac);

  std::string instants;
  while (instants.find("\"now\":584.0") == instants.npos) {
    instants += mac.command({"clock", "step"}).output;
  }
  EXPECT_EQ(click.result(), clicked);
  EXPECT_NE(instants.find("{\"now\":40.0,\"ok\":true,\"pace\":0.0}\n"
                          "{\"now\":52.0,\"ok\":true,\"pace\":0.0}\n"
                          "{\"now\":67.0,\"ok\":true,\"pace\":0.0}\n"),
            std::string::npos)
      << instants;
}

TEST(clock, that_stands_lets_the_time_pass_that_it_is_told_to) {
  const ServedMac mac("app Notes pid 41 frontmost\nat 50ms lock\nat 150ms unlock\n");
  mac.command({"clock", "stop"});

  EXPECT_EQ(seen(mac.command({"advance", "100ms"})), "0 {\"now\":100.0,\"ok\":true}\n");
  EXPECT_EQ(seen(mac.command({"clock"})), clockLine("100.0", "0.0"));
  EXPECT_EQ(seen(mac.command({"journal", "--text"})), "0    50 ms        -  happening lock\n");
}

TEST(clock, with_a_speed_takes_its_real_time) {
  const ServedMac mac(notes);
  mac.command({"clock", "run", "10"});

  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(seen(mac.driver({"bg-click", "Notes", "130", "95"})), clicked);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::microseconds(58'400));
}

TEST(clock, is_told_only_what_it_can_do) {
  const ServedMac mac(notes);
  const ServedMac real(notes, {});
  const auto failure = [](const std::string& message) {
    return "1 {\"error\":\"" + message + "\",\"ok\":false}\n";
  };

  EXPECT_EQ(seen(mac.command({"clock", "sideways"})),
            failure("\\\"clock\\\" is followed by stop, step, run or nothing"));
  EXPECT_EQ(
      seen(mac.command({"clock", "stpo"})),
      failure("\\\"clock\\\" is followed by stop, step, run or nothing; did you mean 'stop'?"));
  for (const char* speed : {"0", "-1", "nan", "inf", "much"}) {
    EXPECT_EQ(seen(mac.command({"clock", "run", speed})),
              failure(std::string("a clock runs 0.001 to 1,000,000 times as fast as real time, "
                                  "not ") +
                      speed));
  }
  EXPECT_EQ(seen(mac.command({"clock", "run", "1", "2"})),
            failure("usage: simulated-mac clock [stop|step|run [SPEED]]"));
  EXPECT_EQ(seen(real.command({"clock", "stop"})),
            failure("this Mac runs in real time; only one started with --virtual can be advanced"));
}

}  // namespace
}  // namespace joined
