#include "simulator/rules/watcher.h"

#include <gtest/gtest.h>

#include <vector>

#include "simulator/text/parse.h"

namespace simulator {
namespace {

using driver::Datum;
using driver::pack;
using platform::Function;
using platform::ItemKind;
using Sentences = std::vector<std::string>;

constexpr const char* unreported = "I26: what the user did is not reported";
constexpr const char* untrue = "I26: a report of what the user has not done, or too soon";
constexpr const char* wrongKind = "I26: a report tells another kind or time than the input had";
constexpr const char* wrongTarget = "I26: a report errs about the target";
constexpr const char* wrongSubmission = "I26: a report errs about what was submitted";

/// The calls of a watcher of Notes, which lies under Mail, while Browser is in front.
class watcher_rules : public testing::Test {
 protected:
  watcher_rules() {
    mac_.world = parseWorld(R"(
      app Browser pid 40 bundle com.example.browser frontmost
      app Mail pid 42
          window 8 "Draft" at 0,0 size 50x50
      app Notes pid 41
          window 7 "Inbox" at 0,0 size 200x200)");
    client_.pid = 5'000'000;
    client_.arguments = {"driver", "watch-input", "Notes"};
    mac_.tapLine.taps.push_back({1, client_.pid, false, true, 0x24014EA});
  }

  void call(Function function, Datum::List arguments = {}, Datum answer = {}) {
    const platform::Call made{function, std::move(arguments)};
    rules_.before({made}, violations_);
    rules_.after({made}, {std::move(answer), 0}, violations_);
  }

  void write(const std::string& line) { call(Function::writeOutput, {pack(line)}, pack(true)); }

  void begin() {
    write("{\"ok\":true,\"targetPid\":41,\"touchesTarget\":false,\"watching\":true}");
  }

  tap::Event event(std::uint32_t type, std::int64_t keyCode = 0) {
    tap::Event made;
    made.type = type;
    made.keyCode = keyCode;
    made.deltaX = 2;
    made.location = {100, 100};
    return made;
  }

  void hears(const tap::Event& event, double time = 100) {
    call(Function::nextItem, {}, pack(platform::WireItem{ItemKind::tapEvent, 1, 0, event}));
    call(Function::calendar, {}, pack(time));
  }

  void reports(const std::string& kind, bool touchesTarget, const char* time = "100000",
               const std::string& further = "") {
    write("{\"at\":" + std::string(time) + ",\"input\":\"" + kind + "\"," + further +
          "\"touchesTarget\":" + (touchesTarget ? "true}" : "false}"));
  }

  /// It waits for the next input: what was broken until then.
  Sentences rests() {
    rules_.before({{Function::nextItem, {}}}, violations_);
    return std::exchange(violations_, {});
  }

  static constexpr std::uint32_t leftDown = 1;
  static constexpr std::uint32_t moved = 5;
  static constexpr std::uint32_t keyDown = 10;
  static constexpr std::uint32_t scrolled = 22;

  Mac mac_;
  Client client_;
  WatchedRun run_{mac_, client_};
  WatcherRules rules_{run_};
  Sentences violations_;
};

TEST_F(watcher_rules, are_kept_by_one_that_reports_what_it_hears) {
  begin();
  hears(event(keyDown));
  reports("key", false);
  hears(event(leftDown), 100.1);
  reports("pointer", true, "100100");
  hears(event(scrolled), 100.1);
  reports("scroll", true, "100100");
  hears(event(moved), 101);
  reports("pointer", false, "101000");
  EXPECT_EQ(rests(), Sentences{});
}

TEST_F(watcher_rules, want_each_input_reported_when_it_is_heard) {
  begin();
  hears(event(keyDown));
  EXPECT_EQ(rests(), Sentences{unreported});
  hears(event(leftDown));
  EXPECT_EQ(rests(), Sentences{unreported});
}

TEST_F(watcher_rules, want_other_input_reported_a_quarter_of_a_second_after_a_report) {
  begin();
  hears(event(keyDown));
  reports("key", false);
  hears(event(keyDown), 100.25);
  EXPECT_EQ(rests(), Sentences{});
  hears(event(keyDown), 100.25);
  reports("key", false, "100250");
  EXPECT_EQ(rests(), Sentences{untrue});
  hears(event(keyDown), 100.2501);
  EXPECT_EQ(rests(), Sentences{unreported});
  hears(event(keyDown), 99);
  EXPECT_EQ(rests(), Sentences{unreported});
}

TEST_F(watcher_rules, want_input_on_the_target_and_submissions_reported_at_once) {
  begin();
  hears(event(keyDown));
  reports("key", false);
  hears(event(scrolled));
  EXPECT_EQ(rests(), Sentences{unreported});
  hears(event(keyDown, 36));
  EXPECT_EQ(rests(), Sentences{unreported});
  tap::Event shifted = event(keyDown, 76);
  shifted.flags = 0x20000;
  hears(shifted);
  EXPECT_EQ(rests(), Sentences{});
}

TEST_F(watcher_rules, forbid_reports_of_own_input_of_trembling_and_of_nothing) {
  begin();
  reports("key", false);
  EXPECT_EQ(rests(), Sentences{untrue});
  tap::Event own = event(keyDown);
  own.sourceUserData = 0x5A545256;
  hears(own);
  reports("key", false);
  EXPECT_EQ(rests(), Sentences{untrue});
  tap::Event trembling = event(moved);
  trembling.deltaX = 1;
  hears(trembling);
  reports("pointer", false);
  EXPECT_EQ(rests(), Sentences{untrue});
  hears(event(keyDown), 101);
  reports("key", false, "101000");
  reports("key", false, "101000");
  EXPECT_EQ(rests(), Sentences{untrue});
}

TEST_F(watcher_rules, forbid_another_kind_or_time) {
  begin();
  hears(event(keyDown));
  reports("pointer", false);
  EXPECT_EQ(rests(), Sentences{wrongKind});
  hears(event(keyDown), 101);
  reports("key", false, "101001");
  EXPECT_EQ(rests(), Sentences{wrongKind});
}

TEST_F(watcher_rules, forbid_errors_about_the_target) {
  begin();
  hears(event(leftDown));
  reports("pointer", false);
  EXPECT_EQ(rests(), Sentences{wrongTarget});
  tap::Event covered = event(leftDown);
  covered.location = {20, 20};
  hears(covered, 101);
  reports("pointer", true, "101000");
  EXPECT_EQ(rests(), Sentences{wrongTarget});
  hears(event(keyDown), 102);
  write("{\"at\":102000,\"input\":\"key\"}");
  EXPECT_EQ(rests(), Sentences{wrongTarget});
}

TEST_F(watcher_rules, forbid_errors_about_what_was_submitted) {
  begin();
  hears(event(keyDown, 36));
  reports("key", false);
  EXPECT_EQ(rests(), Sentences{wrongSubmission});
  hears(event(keyDown, 36));
  reports("key", false, "100000", "\"submit\":\"com.example.notes\",");
  EXPECT_EQ(rests(), Sentences{wrongSubmission});
  hears(event(keyDown, 36));
  reports("key", false, "100000", "\"submit\":\"com.example.browser\",");
  EXPECT_EQ(rests(), Sentences{});
  hears(event(keyDown), 101);
  reports("key", false, "101000", "\"submit\":\"com.example.browser\",");
  EXPECT_EQ(rests(), Sentences{wrongSubmission});
}

TEST_F(watcher_rules, hold_nothing_against_one_whose_question_a_fault_has_answered) {
  begin();
  hears(event(leftDown));
  const platform::Call asked{Function::windows, {}};
  rules_.after({asked, 0, true}, {}, violations_);
  reports("pointer", false);
  EXPECT_EQ(rests(), Sentences{});
}

TEST_F(watcher_rules, hold_nothing_against_one_that_asks_when_the_user_has_gone_on) {
  begin();
  hears(event(keyDown));
  mac_.world.frontmost = 41;
  reports("key", true);
  hears(event(keyDown, 36), 101);
  mac_.world.frontmost = 40;
  reports("key", false, "101000", "\"submit\":\"com.example.browser\",");
  EXPECT_EQ(rests(), Sentences{});
}

TEST_F(watcher_rules, want_a_tap_that_is_told_of_all_input) {
  mac_.tapLine.taps.front().mask = 0x4014EA;
  begin();
  EXPECT_EQ(rests(), Sentences{"I26: the watcher's tap hears not all of the user"});
  mac_.tapLine.taps.front() = {1, client_.pid, true, true, 0x24014EA};
  begin();
  EXPECT_EQ(rests(), Sentences{"I26: the watcher's tap hears not all of the user"});
}

TEST_F(watcher_rules, want_a_disabled_tap_enabled_again) {
  begin();
  call(Function::nextItem, {},
       pack(platform::WireItem{ItemKind::tapEvent, 1, 0, event(tap::disabledByTimeout)}));
  EXPECT_EQ(rests(), Sentences{"I26: a disabled tap is not enabled again"});
  call(Function::nextItem, {},
       pack(platform::WireItem{ItemKind::tapEvent, 1, 0, event(tap::disabledByTimeout)}));
  call(Function::enableTap);
  EXPECT_EQ(rests(), Sentences{});
}

TEST_F(watcher_rules, forbid_to_go_on_without_hearing) {
  begin();
  mac_.tapLine.taps.front().enabled = false;
  rests();
  rules_.beforeTimePasses(violations_);
  mac_.now = 2'500'000;
  rules_.beforeTimePasses(violations_);
  EXPECT_EQ(rests(), Sentences{});
  mac_.now = 2'500'001;
  rules_.beforeTimePasses(violations_);
  rules_.beforeTimePasses(violations_);
  EXPECT_EQ(rests(), Sentences{"I26: the watcher goes on, and hears nothing"});
}

TEST_F(watcher_rules, forbid_to_have_gone_on_without_hearing) {
  begin();
  rests();
  mac_.tapLine.taps.front().enabled = false;
  rules_.beforeTimePasses(violations_);
  mac_.now = 60'000'000;
  mac_.tapLine.taps.clear();
  rules_.atEnd(violations_);
  EXPECT_EQ(violations_, Sentences{"I26: the watcher goes on, and hears nothing"});
}

TEST_F(watcher_rules, let_one_wait_unhearing_for_its_reader_or_an_answer) {
  begin();
  mac_.tapLine.taps.front().enabled = false;
  rests();
  rules_.before({{Function::tapIsEnabled, {}}}, violations_);
  rules_.beforeTimePasses(violations_);
  mac_.now = 9'000'000;
  rules_.beforeTimePasses(violations_);
  EXPECT_EQ(violations_, Sentences{});
}

TEST_F(watcher_rules, forbid_to_go_on_without_a_reader) {
  begin();
  run_.outputRefused = true;
  EXPECT_EQ(rests(), Sentences{"I26: the watcher goes on, and nobody reads it"});
}

}  // namespace
}  // namespace simulator
