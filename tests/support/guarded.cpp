#include "tests/support/guarded.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "platform/simulated/channel.h"

namespace testing_support {

std::string deskWith(const std::vector<std::string>& happenings) {
  std::string world(guardedDesk);
  for (const std::string& happening : happenings) world += "at " + happening + "\n";
  return world;
}

Result guard(TestMac& mac, const Environment& environment, const Schedule& schedule) {
  const std::vector<std::string> commandLine = {"driver", "lock-guard"};
  const Result result = mac.record(commandLine, environment, [&](std::size_t client) {
    return runDirect(mac.desktop(), client, commandLine, schedule);
  });
  const driver::Globals& values = driver::globals();
  const long kept = (values.src ? 1 : 0) + (values.guardOruFace ? 1 : 0) +
                    (values.guardTap ? 1 : 0) + (values.guardUserPicture ? 1 : 0) +
                    (values.guardAppIcon ? 1 : 0);
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
