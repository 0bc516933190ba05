#include <gtest/gtest.h>

#include "tests/support/pasting.h"

/// Somebody copies something just before each call of a paste, and of one that fails. The rules are
/// checked in each run.
namespace clipboard_sweep_test {

using namespace testing_support;

/// The calls before which a copy is lost, in a paste with these faults; the reply tells of each. At
/// all others the newer copy stays.
std::vector<std::string> losses(const std::string& command, const std::vector<std::string>& faults,
                                const Environment& environment) {
  TestMac recorded(pastingDesk, faults);
  recorded.driver("bg-paste-files " + command, environment);
  const std::size_t all = recorded.desktop().trace().size();
  std::vector<std::string> lost;
  for (std::size_t call = 1; call <= all; ++call) {
    std::vector<std::string> both = faults;
    both.push_back("any " + std::to_string(call) + " before user copy newer");
    SCOPED_TRACE(both.back());
    TestMac mac(pastingDesk, both);
    const Result run = mac.driver("bg-paste-files " + command, environment);
    const bool isTold = run.output.find("\"copyLost\":true") != std::string::npos;
    EXPECT_EQ(clipboard(mac) != newerClipboard, isTold);
    if (isTold) lost.emplace_back(platform::nameOf(mac.desktop().trace()[call - 1].call.function));
  }
  return lost;
}

const std::vector<std::string> bothClearings = {"pasteboard.clear", "pasteboard.clear"};

TEST(copies_at_any_call, are_lost_right_before_the_two_clearings_alone) {
  EXPECT_EQ(losses("Notes /a.txt", {}, {}), bothClearings);
  EXPECT_EQ(losses("Mail /a.txt b.txt", {}, {{"CU_CAPTURE_PID", "900"}}), bothClearings);
  EXPECT_EQ(losses("Browser /a.txt", {}, {}), bothClearings);
}

TEST(copies_at_any_call, are_lost_right_before_the_two_clearings_alone_when_the_paste_fails) {
  const Environment service = {{"CU_CAPTURE_PID", "900"}};
  EXPECT_EQ(losses("Notes /a.txt", {"pasteboard.write-files 1 refused"}, {}), bothClearings);
  EXPECT_EQ(losses("Mail /a.txt", {"ax.perform 1 error -25200"}, {}), bothClearings);
  EXPECT_EQ(losses("Notes /a.txt", {"quartz.post 2 before end process 900"}, service),
            bothClearings);
  EXPECT_EQ(losses("Notes /a.txt", {"quartz.post 2 before lock"}, service), bothClearings);
  EXPECT_EQ(losses("Notes /a.txt", {"pasteboard.items 1 absent"}, {}), std::vector<std::string>{});
}

}  // namespace clipboard_sweep_test
