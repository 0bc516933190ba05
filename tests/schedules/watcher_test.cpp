#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/watching.h"

/// The watcher of the user's input, with its two flows in every order.
namespace watcher_schedule_test {

using namespace testing_support;

/// The calls that are made once there are two flows.
std::size_t callsInTurn(const std::string& world) {
  TestMac mac(world, {}, Mode::direct);
  watch(mac, {});
  const auto& trace = mac.desktop().trace();
  const auto start = std::find_if(trace.begin(), trace.end(), [](const auto& entry) {
    return entry.call.function == platform::Function::startFlow;
  });
  return static_cast<std::size_t>(trace.end() - start);
}

/// Every outcome, once, of the watcher under each schedule with up to two pre-emptions of the flow
/// that serves the tap by the one that reads standard input, or the other way round.
std::set<std::string> outcomes(const std::vector<std::string>& happenings) {
  const std::string world = watchedDeskWith(happenings, "3s");
  const std::size_t calls = callsInTurn(world) + 4;
  std::set<std::string> found;
  const auto tryOne = [&](const Schedule& schedule) {
    TestMac mac(world, {}, Mode::direct);
    found.insert(seen(watch(mac, {}, schedule)));
  };
  tryOne({});
  for (std::size_t first = 0; first < calls; ++first) {
    for (std::size_t flow = 0; flow < 2; ++flow) {
      Schedule schedule;
      schedule.switches[first] = flow;
      tryOne(schedule);
      for (std::size_t second = first + 1; second < calls; ++second) {
        schedule.switches = {{first, flow}, {second, 1 - flow}};
        tryOne(schedule);
      }
    }
  }
  return found;
}

TEST(watch_input_schedules, end_with_whole_lines) {
  const std::string key = submission("com.example.browser", 1000);
  for (const std::string& outcome :
       outcomes({"1s user key return", "1s user key enter", "1s input \"x\"", "1s close input"})) {
    EXPECT_TRUE(outcome == reports({}) || outcome == reports({key}) ||
                outcome == reports({key, key}))
        << outcome;
  }
}

TEST(watch_input_schedules, without_an_end_lose_no_line) {
  EXPECT_EQ(outcomes({"1s user key return", "1s disable taps", "2s user key return"}),
            (std::set<std::string>{reports({submission("com.example.browser", 1000),
                                            submission("com.example.browser", 2000)})}));
}

}  // namespace watcher_schedule_test
