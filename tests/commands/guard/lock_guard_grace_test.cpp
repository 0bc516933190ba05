#include <gtest/gtest.h>

#include "tests/support/guarded.h"

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::endedByGrace;
using testing_support::Environment;
using testing_support::guard;
using testing_support::guardedDesk;
using testing_support::guardSays;
using testing_support::guardStarts;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::stillRunning;
using testing_support::TestMac;

const Environment tenSeconds = {{"ZENTROVE_COVER_GRACE", "10"}};

/// What the hint says, and when, in milliseconds: one line for each time it is shown or changed.
std::string hints(const std::string& world, const std::string& grace) {
  TestMac mac(world, {}, Mode::direct);
  guard(mac, {{"ZENTROVE_COVER_GRACE", grace}});
  std::string lines;
  for (const auto& entry : mac.desktop().trace()) {
    std::string text;
    if (entry.call.function == platform::Function::showPanel) {
      text = driver::unpack<platform::WirePanel>(entry.call.arguments[0]).labels[1].text;
    } else if (entry.call.function == platform::Function::setPanelLabel) {
      text = driver::unpack<std::string>(entry.call.arguments[2]);
    } else {
      continue;
    }
    EXPECT_EQ(entry.at % 1000, 0) << text;
    lines += std::to_string(entry.at / 1000) + " " + text + "\n";
  }
  return lines;
}

TEST(grace, ignores_what_was_under_way_when_it_began) {
  for (const char* time : {"1us", "1ms", "500ms", "999999us"}) {
    for (const char* deed : {"key a", "click 300,300", "scroll 0,1", "move 300,300"}) {
      TestMac mac(deskWith({std::string(time) + " user " + deed, "3s user key b"}), {},
                  Mode::direct);
      const Result run = guard(mac, tenSeconds);
      EXPECT_EQ(seen(run), guardSays({endedByGrace})) << time << deed;
      EXPECT_EQ(run.elapsed, 3'000'000);
      EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
    }
  }
}

TEST(grace, ends_at_a_key_or_a_click_after_its_first_second_without_a_lock) {
  for (const char* time : {"1s", "1000001us", "3s", "9999ms", "9999999us"}) {
    for (const char* deed :
         {"key a", "click 300,300", "click 300,300 right", "click 300,300 other", "scroll 0,1"}) {
      TestMac mac(deskWith({std::string(time) + " user " + deed}), {}, Mode::direct);
      const Result run = guard(mac, tenSeconds);
      EXPECT_EQ(seen(run), guardSays({endedByGrace})) << time << deed;
      EXPECT_FALSE(mac.world().session.locked.value_or(false));
      EXPECT_EQ(mac.valueOf("Notes", "Body"), "") << "what ends it goes no further";
    }
  }
}

TEST(grace, minds_no_movement_however_large) {
  TestMac mac(deskWith({"500ms user move 700,500", "2s user move 10,10", "9s user move 1400,800",
                        "9500ms user move 10,10"}),
              {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac, tenSeconds)),
            std::to_string(stillRunning) + " " + std::string(guardStarts));
}

TEST(grace, that_has_run_out_locks) {
  for (const char* deed : {"10s user key a", "11s user key a", "10s user move 300,300",
                           "10000001us user click 300,300", "60s user scroll 0,1"}) {
    EXPECT_EQ(seen(guard(deskWith({deed}), tenSeconds)), guardSays({endedBy("user")})) << deed;
  }
}

TEST(grace, takes_the_agents_own_input_for_none) {
  TestMac mac(deskWith({"3s user key a tagged", "4s user click 300,300 tagged"}), {}, Mode::direct);
  EXPECT_EQ(seen(guard(mac, tenSeconds)),
            std::to_string(stillRunning) + " " + std::string(guardStarts));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "a");
}

TEST(grace, shorter_than_a_second_only_ever_locks) {
  EXPECT_EQ(seen(guard(deskWith({"400ms user key a", "600ms user key b"}),
                       {{"ZENTROVE_COVER_GRACE", "0.5"}})),
            guardSays({endedBy("user")}));
}

TEST(grace, that_is_no_number_or_has_no_end_is_none) {
  for (const char* value :
       {"", "0", "-5", "abc", "nan", "inf", "-inf", "infinity", "1e999", "5s"}) {
    EXPECT_EQ(seen(guard(deskWith({"3s user key a"}), {{"ZENTROVE_COVER_GRACE", value}})),
              guardSays({endedBy("user")}))
        << value;
  }
}

TEST(grace, may_be_as_long_as_a_number_gets) {
  for (const char* value : {"1e6", "1e15", "1e308"}) {
    EXPECT_EQ(seen(guard(deskWith({"3s user key a"}), {{"ZENTROVE_COVER_GRACE", value}})),
              guardSays({endedByGrace}))
        << value;
  }
}

TEST(grace, is_counted_down_second_by_second) {
  std::string expected = "0 Press a key or click within 10 seconds to go back to Kelto\n";
  for (int left = 9; left > 0; --left) {
    expected += std::to_string(10'000 - 1'000 * left) + " Press a key or click within " +
                std::to_string(left) + " seconds to go back to Kelto\n";
  }
  expected += "10000 Press any key or move the mouse to lock\n";
  EXPECT_EQ(hints(std::string(guardedDesk), "10"), expected);
}

TEST(grace, of_a_fraction_is_rounded_up_and_its_last_text_stays) {
  EXPECT_EQ(hints(std::string(guardedDesk), "2.5"),
            "0 Press a key or click within 3 seconds to go back to Kelto\n"
            "1000 Press a key or click within 2 seconds to go back to Kelto\n"
            "2000 Press a key or click within 1 seconds to go back to Kelto\n");
  EXPECT_EQ(hints(std::string(guardedDesk), "2.2"),
            "0 Press a key or click within 3 seconds to go back to Kelto\n"
            "1000 Press a key or click within 2 seconds to go back to Kelto\n"
            "2000 Press a key or click within 1 seconds to go back to Kelto\n");
}

TEST(grace, of_less_than_a_second_is_counted_once) {
  EXPECT_EQ(hints(std::string(guardedDesk), "0.25"),
            "0 Press a key or click within 1 seconds to go back to Kelto\n"
            "1000 Press any key or move the mouse to lock\n");
}

TEST(grace, that_there_is_none_of_is_not_counted) {
  EXPECT_EQ(hints(std::string(guardedDesk), "0"), "0 Press any key or move the mouse to lock\n");
}

TEST(grace, is_counted_on_every_screen_and_in_chinese) {
  EXPECT_EQ(hints("languages zh-Hans,en\ndisplay 1 1440x900\ndisplay 2 1280x720 at 1440,0\n", "2"),
            "0 2 秒内按键或点一下，回到 Kelto\n"
            "0 2 秒内按键或点一下，回到 Kelto\n"
            "1000 1 秒内按键或点一下，回到 Kelto\n"
            "1000 1 秒内按键或点一下，回到 Kelto\n"
            "2000 碰一下键盘或鼠标就锁屏\n"
            "2000 碰一下键盘或鼠标就锁屏\n");
}

TEST(grace, locks_for_everything_else_that_ends_the_guard) {
  EXPECT_EQ(seen(guard(deskWith({"3s signal 15"}), tenSeconds)), guardSays({endedBy("signal")}));
  EXPECT_EQ(seen(guard(deskWith({"3s close input"}), tenSeconds)), guardSays({endedBy("run")}));
  EXPECT_EQ(seen(guard(deskWith({"3s request termination"}), tenSeconds)),
            guardSays({endedBy("quit")}));
  EXPECT_EQ(seen(guard(deskWith({"3s end-loop"}), tenSeconds)), guardSays({endedBy("loop")}));
}

// So long a grace is not exact to the second by its end.
TEST(grace, of_any_size_keeps_its_first_second) {
  for (const char* grace : {"10", "1e15", "1e16", "1e300"}) {
    const Result run = guard(deskWith({"500ms user key a", "1500ms user key b"}),
                             {{"ZENTROVE_COVER_GRACE", grace}});
    EXPECT_EQ(seen(run), guardSays({endedByGrace})) << grace;
    EXPECT_EQ(run.elapsed, 1'500'000) << grace;
  }
}

}  // namespace
