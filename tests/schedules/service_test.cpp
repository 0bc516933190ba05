#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <set>

#include "simulator/text/parse.h"
#include "tests/support/inside.h"
#include "tests/support/service_desk.h"

/// Every order in which the flows of a service can go on, up to two pre-emptions: its task, the
/// flow that brings news of stopped sharing, and the main flow, which takes signals.
namespace service_schedule_test {

using namespace testing_support;

/// The flows in the order of their starting; those that a scenario has something to do for.
constexpr std::size_t mainFlow = 0;
constexpr std::size_t task = 1;
constexpr std::size_t news = 2;

struct Scenario {
  const char* name;
  std::vector<std::string> lines;
  std::vector<std::string> faults;
  std::set<int> statuses;  // that it may end with
  std::vector<std::size_t> flows;
};

void PrintTo(const Scenario& scenario, std::ostream* out) { *out << scenario.name; }

std::string scheduleText(const Schedule& schedule) {
  std::string text;
  for (const auto& [call, flow] : schedule.switches) {
    text += "at call " + std::to_string(call) + " to flow " + std::to_string(flow) + "; ";
  }
  return text;
}

/// A last line that is a failure, and nothing behind it; every line whole.
void checkLines(const Result& run) {
  std::size_t start = 0;
  bool failed = false;
  for (std::size_t end = run.output.find('\n'); end != std::string::npos;
       end = run.output.find('\n', start)) {
    EXPECT_FALSE(failed) << run.output;
    const std::string line = run.output.substr(start, end - start);
    EXPECT_EQ(line.front(), '{') << run.output;
    EXPECT_EQ(line.back(), '}') << run.output;
    failed = line.rfind("{\"error\"", 0) == 0;
    start = end + 1;
  }
  EXPECT_EQ(start, run.output.size()) << "torn: " << run.output;
}

/// Who made which call: what tells one schedule from another.
using Order = std::vector<std::size_t>;

Order runWith(const Scenario& scenario, Schedule schedule) {
  static const simulator::World world = simulator::parseWorld(serviceDesk);
  std::vector<simulator::Fault> faults;
  for (const std::string& fault : scenario.faults) {
    faults.push_back(simulator::parseFault(fault, world));
  }
  Order order;
  schedule.callers = &order;
  TestMac mac(world, faults, Mode::direct);
  const Result result = serve(mac, scenario.lines, {{}, schedule, true, {}});
  checkLines(result);
  EXPECT_TRUE(scenario.statuses.count(result.status) != 0) << result.status;
  EXPECT_TRUE(mac.world().sharings.empty());
  std::string broken;
  for (const std::string& violation : mac.takeViolations()) broken += violation + "\n";
  EXPECT_EQ(broken, "");
  return order;
}

/// All schedules of the scenario with up to `depth` more pre-emptions than `schedule`, which runs
/// in the order `base`, from the call `from` on. Returns how many there were.
std::size_t explore(const Scenario& scenario, const Schedule& schedule, const Order& base,
                    std::size_t from, int depth) {
  std::size_t runs = 0;
  for (std::size_t call = from; call < base.size(); ++call) {
    for (const std::size_t flow : scenario.flows) {
      if (flow == base[call]) continue;
      Schedule next = schedule;
      next.switches[call] = flow;
      SCOPED_TRACE(scheduleText(next));
      const Order order = runWith(scenario, next);
      ++runs;
      if (testing::Test::HasFailure()) return runs;
      // Whoever could not go on has not been switched to.
      if (depth > 1 && order != base) runs += explore(scenario, next, order, call + 1, depth - 1);
    }
  }
  return runs;
}

class capture_service_schedule : public testing::TestWithParam<Scenario> {};

TEST_P(capture_service_schedule, keeps_every_rule_with_up_to_two_pre_emptions) {
  const Order base = runWith(GetParam(), {});
  const std::size_t runs = explore(GetParam(), {}, base, 0, 2);
  EXPECT_GE(runs, base.size());
  RecordProperty("runs", std::to_string(runs));
}

const std::string openNotes = openLine("n", "Notes");
const std::string holdNotes = commandLine("n", "bg-focus-hold Notes");
const std::string moveNotes = commandLine("n", "bg-move Notes 130 95");

INSTANTIATE_TEST_SUITE_P(
    scenarios, capture_service_schedule,
    testing::Values(Scenario{"stop_between_requests",
                             {openNotes, sessionLine("refresh", "n"), sessionLine("close", "n")},
                             {"streams.read-line 2 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"stop_as_a_request_fails",
                             {openNotes, "[]"},
                             {"streams.read-line 2 before stop sharing Notes"},
                             {1},
                             {task, news}},
                    Scenario{"stop_as_input_ends",
                             {openNotes, holdNotes},
                             {"streams.read-line 3 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"stop_as_focus_is_held",
                             {openNotes, holdNotes, sessionLine("close", "n")},
                             {"ax.attributes 1 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"stop_as_focus_is_given_for_a_move",
                             {openNotes, moveNotes},
                             {"private.post-record 1 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"stop_as_focus_is_taken_back_after_a_move",
                             {openNotes, moveNotes},
                             {"private.post-record 2 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"stop_as_a_move_is_posted",
                             {openNotes, moveNotes},
                             {"quartz.post 1 before stop sharing Notes"},
                             {0, 1},
                             {task, news}},
                    Scenario{"signal_as_focus_is_held",
                             {openNotes, holdNotes},
                             {"private.post-record 1 before signal 15"},
                             {0, 143},
                             {mainFlow, task}},
                    Scenario{"signal_as_input_ends",
                             {openNotes, holdNotes},
                             {"streams.read-line 3 before signal 15"},
                             {0, 143},
                             {mainFlow, task}},
                    Scenario{"signal_as_a_request_fails",
                             {openNotes, holdNotes, "{}"},
                             {"streams.read-line 3 before signal 15"},
                             {1, 143},
                             {mainFlow, task}},
                    Scenario{"signal_as_a_move_is_posted",
                             {openNotes, moveNotes},
                             {"quartz.post 1 before signal 15"},
                             {0, 143},
                             {mainFlow, task}},
                    Scenario{"signal_and_stop",
                             {openNotes, holdNotes},
                             {"streams.read-line 3 before signal 15",
                              "streams.acquire-output 3 before stop sharing Notes"},
                             {0, 1, 143},
                             {mainFlow, task, news}},
                    Scenario{"stop_as_the_screen_locks",
                             {openNotes, moveNotes},
                             {"quartz.post 1 before stop sharing Notes",
                              "streams.acquire-output 3 before lock"},
                             {0, 1},
                             {task, news}}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace service_schedule_test
