#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "simulator/desktop.h"
#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/presses.h"

namespace simulator {

namespace {

using Lines = std::vector<std::string>;

/// A Mac whose applications do things while time passes.
class passing_time : public testing::Test {
 protected:
  void begin(const std::string& lines) { desktop_.emplace(parseWorld(desk + lines)); }

  World& world() { return desktop_->mac().world; }
  std::string held(const std::string& label, std::size_t application = 0) {
    return std::string(textOf(*findLabelled(world().applications[application], label)));
  }
  void press(const std::string& label) {
    Application& notes = world().applications[0];
    simulator::press(world(), notes, findLabelled(notes, label)->id);
  }
  Lines journal() const {
    Lines lines;
    for (const auto& entry : desktop_->mac().journal) lines.push_back(effectLine(entry, 0));
    return lines;
  }

  static constexpr const char* desk = R"(
    app Notes pid 41 frontmost
        window 7 "Inbox" at 0,0 size 300x300
            AXStaticText "Log"
            AXButton "Send" press: set Log "sending"; after 2s set Log "sent"; append "…" to Log
            AXButton "Ring" press: after 250us in Other append "ring " to Bell
            AXButton "Gone" press: after 1s toggle; after 1s set Log "gone"; remove Gone
            AXButton "Crash" press: after 3s quit; after 5s set Log "still there"
            AXButton "Hang" press: hang; after 1s set Log "moved on"
            AXButton "Soon" press: after 1s..3s set Log "soon"
    app Other pid 42
        window 8 "Door" at 400,0 size 300x300
            AXStaticText "Bell"
)";

  std::optional<Desktop> desktop_;
};

TEST_F(passing_time, brings_what_follows_a_press_to_the_microsecond) {
  begin("");
  desktop_->advanceTo(1'000);
  press("Send");
  EXPECT_EQ(held("Log"), "sending…");

  EXPECT_EQ(desktop_->nextOwn(), 2'001'000);
  desktop_->advanceTo(2'000'999);
  EXPECT_EQ(held("Log"), "sending…");
  desktop_->advanceTo(2'001'000);
  EXPECT_EQ(held("Log"), "sent");

  EXPECT_EQ(desktop_->nextOwn(), std::nullopt);
  EXPECT_EQ(journal(), Lines{" 2001 ms  landing 41/7 set Log \"sent\""});
}

TEST_F(passing_time, brings_effects_in_another_application) {
  begin("");
  press("Ring");
  desktop_->advanceTo(249);
  press("Ring");
  EXPECT_EQ(held("Bell", 1), "");
  desktop_->advanceTo(499);

  EXPECT_EQ(held("Bell", 1), "ring ring ");
}

TEST_F(passing_time, lets_what_is_about_others_take_place_when_its_element_has_gone) {
  begin("");
  press("Gone");
  desktop_->advanceTo(1'000'000);

  EXPECT_EQ(held("Log"), "gone");
  EXPECT_EQ(journal(),
            (Lines{" 1000 ms  landing 41/0 toggle", " 1000 ms  landing 41/0 set Log \"gone\""}));
}

TEST_F(passing_time, says_what_is_missing_when_it_is_due) {
  begin("    at 1s in Notes remove Log");
  press("Send");
  desktop_->advanceTo(2'000'000);

  EXPECT_EQ(journal(), (Lines{" 1000 ms  happening 41/0 in Notes remove Log",
                              " 2000 ms  landing 41/7 set Log \"sent\": finds nothing labelled "
                              "\"Log\""}));
}

TEST_F(passing_time, brings_nothing_from_an_application_that_has_gone_or_hangs) {
  begin("");
  press("Crash");
  press("Hang");
  desktop_->advanceTo(10'000'000);

  EXPECT_EQ(journal(),
            (Lines{" 1000 ms  landing 41/0 set Log \"moved on\" LOST: the application hangs",
                   " 3000 ms  landing 41/0 quit LOST: the application hangs",
                   " 5000 ms  landing 41/0 set Log \"still there\" LOST: the application hangs"}));
}

TEST_F(passing_time, lets_applications_do_by_themselves_whatever_a_press_may_do) {
  begin(R"(
    at 1s in Other set Bell "one"; after 500ms append " two" to Bell; in Notes set Log value of Bell
    at 2s in Other quit
    at 3s in pid:42 set Bell "late"
)");
  desktop_->advanceTo(4'000'000);

  EXPECT_EQ(held("Log"), "one");
  EXPECT_EQ(
      journal(),
      (Lines{" 1000 ms  happening 42/0 in Other set Bell \"one\"; after 500ms append "
             "\" two\" to Bell; in Notes set Log value of Bell",
             " 1500 ms  landing 42/0 append \" two\" to Bell",
             " 2000 ms  happening 42/0 in Other quit",
             " 3000 ms  happening 42/0 in Other set Bell \"late\": the application is gone"}));
}

TEST_F(passing_time, repeats_what_happens_as_often_as_it_is_told) {
  begin(R"(
    at 1s every 2s 3 times in Notes append "a" to Log
    at 3s in Notes append "b" to Log
    at 5s in Notes append "c" to Log
)");
  desktop_->advanceTo(3'000'000);
  EXPECT_EQ(held("Log"), "aab");
  EXPECT_EQ(desktop_->nextOwn(), 5'000'000);
  desktop_->advanceTo(100'000'000);

  EXPECT_EQ(held("Log"), "aabac");
  EXPECT_EQ(desktop_->nextOwn(), std::nullopt);
}

TEST_F(passing_time, repeats_for_ever_but_moves_no_time_for_that_alone) {
  begin(
      "    at 1s every 4s in Notes append \"a\" to Log; after 1s append \"b\" to Log\n    at 6s "
      "lock");

  desktop_->advanceTo(5'000'000);
  EXPECT_EQ(held("Log"), "aba");
  EXPECT_EQ(desktop_->nextOwn(), 6'000'000);
  std::vector<Microseconds> times;
  for (auto own = desktop_->nextOwnInRun(); own; own = desktop_->nextOwnInRun()) {
    desktop_->advanceTo(*own);
    times.push_back(*own);
  }

  EXPECT_EQ(times,
            (std::vector<Microseconds>{6'000'000, 9'000'000, 10'000'000, 13'000'000, 14'000'000}));
  EXPECT_EQ(desktop_->nextOwn(), 17'000'000);
}

TEST_F(passing_time, takes_the_middle_of_a_span_without_a_seed) {
  begin(R"(
    at 2s..5s in Notes append "a" to Log
    at 1s every 1s..2s 2 times in Notes append "b" to Log
)");
  press("Soon");
  EXPECT_EQ(desktop_->nextOwn(), 1'000'000);
  desktop_->advanceTo(2'000'000);
  EXPECT_EQ(held("Log"), "soon");
  EXPECT_EQ(desktop_->nextOwn(), 2'500'000);
  desktop_->advanceTo(2'500'000);
  EXPECT_EQ(held("Log"), "soonb");
  EXPECT_EQ(desktop_->nextOwn(), 3'500'000);
}

TEST_F(passing_time, leaves_a_span_to_chance_with_a_seed) {
  const auto timesOf = [&](const std::string& seed) {
    begin("    " + seed + "\n    at 1s every 1s..2s 50 times in Notes append \"b\" to Log");
    std::vector<Microseconds> times;
    for (auto own = desktop_->nextOwn(); own; own = desktop_->nextOwn()) {
      desktop_->advanceTo(*own);
      times.push_back(*own);
    }
    return times;
  };
  const std::vector<Microseconds> times = timesOf("seed 7");

  ASSERT_EQ(times.size(), 50U);
  for (std::size_t i = 1; i < times.size(); ++i) {
    EXPECT_GE(times[i] - times[i - 1], 1'000'000);
    EXPECT_LE(times[i] - times[i - 1], 2'000'000);
  }
  EXPECT_EQ(timesOf("seed 7"), times);
  EXPECT_NE(timesOf("seed 8"), times);
}

}  // namespace

}  // namespace simulator
