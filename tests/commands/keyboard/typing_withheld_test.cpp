#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "simulator/rules/pace.h"
#include "tests/support/posted_keys.h"

/// A text stops when the session becomes unusable and when the capture service goes, whichever of
/// its events is next; and what becomes of one while the user does something else.
namespace typing_withheld_test {

using namespace testing_support;

std::string deskWith(const std::string& script) {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 300x300
            AXTextArea "Body" at 120,130 size 200x200
        window 8 "Outbox" at 500,80 size 300x300
            AXTextArea "Draft" at 520,130 size 200x200
)" + script;
}

/// Two pieces, a line break and a piece.
const std::vector<std::string> command = {"bg-type", "Notes", "12345678901234567890abc\nd"};

struct Step {
  std::int64_t time;  // in microseconds, when everything before it was posted
  const char* name;
};

const std::vector<Step> steps = {
    {340'000, "down 0"},  {352'000, "up 0"},    {364'000, "down 0"}, {376'000, "up 0"},
    {388'000, "down 56"}, {400'000, "down 36"}, {412'000, "up 36"},  {424'000, "up 56"},
    {486'000, "down 0"},  {498'000, "up 0"},
};
constexpr std::int64_t whole = 600'000;
constexpr std::int64_t pace = simulator::waitAfterPost;

std::string stepsBefore(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += (i == 0 ? "" : ", ") + std::string(steps[i].name);
  return text;
}

std::string rightBefore(std::size_t step, const std::string& happening) {
  return "    at " + std::to_string(steps[step].time - 1) + "us " + happening + "\n";
}

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

const std::string withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\",\"locked\":true,"
    "\"ok\":false}\n";

std::uint32_t heldFocus(const TestMac& mac) { return mac.world().applications[1].focusByRecord; }

TEST(typing, is_withheld_from_each_of_its_events_on_when_the_session_becomes_unusable) {
  for (const char* happening : {"lock", "leave console"}) {
    for (std::size_t step = 0; step < steps.size(); ++step) {
      SCOPED_TRACE(rightBefore(step, happening));
      TestMac mac(deskWith(rightBefore(step, happening)));

      const Result run = mac.driverWith(command);

      EXPECT_EQ(seen(run), withheld);
      EXPECT_EQ(keySteps(mac), stepsBefore(step));
      // The wait after the line break stays.
      EXPECT_EQ(run.elapsed, whole - static_cast<std::int64_t>(steps.size() - step) * pace);
      EXPECT_EQ(heldFocus(mac), 0U);
    }
  }
}

TEST(typing, ends_at_each_of_its_events_when_the_capture_service_goes) {
  for (std::size_t step = 0; step < steps.size(); ++step) {
    SCOPED_TRACE(step);
    TestMac mac(deskWith(rightBefore(step, "end process 900")));

    const Result run = mac.driverWith(command, {{"CU_CAPTURE_PID", "900"}});

    EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
    EXPECT_EQ(keySteps(mac), stepsBefore(step));
    EXPECT_EQ(run.elapsed, steps[step].time + 40'000);
    EXPECT_EQ(heldFocus(mac), 0U);
  }
}

TEST(typing, into_a_target_that_quits_ends_as_it_would) {
  for (std::size_t step = 0; step < steps.size(); ++step) {
    TestMac mac(deskWith(rightBefore(step, "quit Notes")));
    const Result run = mac.driverWith(command);
    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), stepsBefore(steps.size()));
    EXPECT_EQ(run.elapsed, whole - 40'000);  // nobody is left to take focus from
  }
}

TEST(typing, goes_on_when_the_lock_ends_during_the_wait_after_a_line_break) {
  TestMac mac(deskWith("    at 425ms lock\n    at 430ms unlock\n"));
  EXPECT_EQ(seen(mac.driverWith(command)), typed);  // no event fell into it
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "12345678901234567890abc\nd");
}

TEST(typing, stops_when_the_user_comes_to_another_window_in_mid_text) {
  TestMac mac(deskWith("    at 430ms user click 600,200\n"));

  const Result run = mac.driverWith(command);

  EXPECT_EQ(
      seen(run),
      success(R"({"error":"the user's keyboard is in another window of the target app by now; )"
              R"(the rest of the input was withheld","ok":false,"typed":24})"));
  EXPECT_EQ(mac.world().frontmost, 41);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "12345678901234567890abc\n");
  EXPECT_EQ(mac.valueOf("Notes", "Draft"), "");
  EXPECT_EQ(run.effects.find("take"), std::string::npos);
  EXPECT_EQ(run.elapsed, whole - 2 * pace - 40'000);
}

TEST(typing, of_the_user_elsewhere_is_not_disturbed) {
  TestMac mac(
      deskWith("    at 345ms user key x\n    at 401ms user key y\n    at 487ms user key z\n"));

  EXPECT_EQ(seen(mac.driverWith(command)), typed);

  EXPECT_EQ(mac.valueOf("Browser", "Address"), "xyz");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "12345678901234567890abc\nd");
}

TEST(typing, goes_to_one_process_even_when_the_user_goes_to_another) {
  TestMac mac(
      deskWith("    app Mail pid 44\n        window 9 \"Mail\" at 0,400 size 90x90\n"
               "            AXTextArea \"Letter\" at 0,400 size 90x90 focused\n"
               "    at 390ms front Mail\n"));

  const Result run = mac.driverWith(command);

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "12345678901234567890abc\nd");
  EXPECT_EQ(mac.valueOf("Mail", "Letter"), "");
  EXPECT_EQ(run.elapsed, whole);
}

TEST(typing, into_a_target_in_front_ends_when_the_user_leaves_in_mid_text) {
  TestMac mac(deskWith("    at 13ms front Notes\n"));

  const Result run = mac.driverWith({"bg-type", "Browser", "12345678901234567890abc"});

  // No record was posted before, and none is posted now: what came later would not arrive.
  EXPECT_EQ(seen(run), success(R"({"error":"the target app is no longer in front; the rest of )"
                               R"(the input was withheld","ok":false,"typed":20})"));
  EXPECT_EQ(mac.valueOf("Browser", "Address"), "12345678901234567890");
  EXPECT_EQ(run.effects.find("give"), std::string::npos);
}

}  // namespace typing_withheld_test
