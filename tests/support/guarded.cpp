#include "tests/support/guarded.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "simulator/text/parse.h"

namespace testing_support {

std::string deskWith(const std::vector<std::string>& happenings) {
  std::string world(guardedDesk);
  for (const std::string& happening : happenings) world += "at " + happening + "\n";
  return world;
}

std::vector<simulator::Outcome> happeningsAt(const simulator::World& world) {
  std::vector<simulator::Outcome> outcomes;
  for (const char* text :
       {"user key a", "user click 300,300", "user move 700,500", "user copy \"newer\"", "signal 15",
        "request termination", "end-loop", "close input", "close output", "stall output",
        "disable taps", "disable taps timeout", "silence taps", "invalidate taps",
        "withdraw accessibility", "withdraw recording", "connect display 2 800x600 at 1440,0",
        "replug display 1", "remove displays"}) {
    outcomes.push_back(
        {simulator::Outcome::Kind::happening, 0, simulator::parseHappening(text, world)});
  }
  return outcomes;
}

Result guard(TestMac& mac, const Environment& environment, const Schedule& schedule) {
  const std::vector<std::string> commandLine = {"driver", "lock-guard"};
  Result result = mac.record(commandLine, environment, [&](std::size_t client) {
    return runDirect(mac.desktop(), client, commandLine, schedule);
  });
  const driver::Globals& values = driver::globals();
  const long kept = (values.src ? 1 : 0) + (values.guardOruFace ? 1 : 0) +
                    (values.guardTap ? 1 : 0) + (values.guardUserPicture ? 1 : 0) +
                    (values.guardAppIcon ? 1 : 0) + (values.lockAsked ? 1 : 0) +
                    (values.lockAnswered ? 1 : 0) + (values.guardBegun ? 1 : 0);
  EXPECT_EQ(simulated::liveHandles(), kept) << "I20: handles are alive";
  return result;
}

Result guard(std::string_view world, const Environment& environment,
             const std::vector<std::string>& faults) {
  TestMac mac(world, faults, Mode::direct);
  return guard(mac, environment);
}

std::string guardSays(const std::vector<std::string>& lines) {
  std::string text = "0 " + std::string(guardStarts);
  for (const std::string& line : lines) text += line + "\n";
  return text;
}

std::string endedBy(std::string_view reason, bool relocked) {
  return "{\"by\":\"" + std::string(reason) +
         "\",\"ok\":true,\"relocked\":" + (relocked ? "true}" : "false}");
}

}  // namespace testing_support
