#include "simulator/rules/clipboard.h"

#include <gtest/gtest.h>

#include "simulator/calls/calls.h"
#include "simulator/text/parse.h"

/// Uses of the pasteboard, and how it must be at the end.
namespace simulator {

namespace {

using driver::pack;
using platform::Function;
using Items = std::vector<pasteboard::Item>;
using Sentences = std::vector<std::string>;

class clipboard_rules : public testing::Test {
 protected:
  clipboard_rules() {
    mac_.world = parseWorld(R"(
      pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}"
      pasteboard item "public.png" "picture" promises "com.example.lazy")");
    client_.pid = 5'000'000;
  }

  driver::Datum call(Function function, driver::Datum::List arguments = {}) {
    const platform::Call made{function, std::move(arguments)};
    rules_.before({made}, violations_);
    const Answer given = answer(mac_, client_, made, 0);
    rules_.after({made}, given, violations_);
    return given.value;
  }

  void take() {
    saved_ = driver::unpack<Items>(call(Function::pasteboardItems));
    call(Function::clearPasteboard);
    call(Function::writeFilesToPasteboard, {pack(std::vector<std::string>{"/a"})});
    own_ = driver::unpack<std::int64_t>(call(Function::pasteboardChangeCount));
    run_.lastSleep = 300'000;
  }

  void giveBack() {
    if (driver::unpack<std::int64_t>(call(Function::pasteboardChangeCount)) != own_) return;
    call(Function::clearPasteboard);
    call(Function::writePasteboard, {pack(saved_)});
  }

  void userCopies() { copyText(mac_.world.pasteboard, "newer"); }

  Sentences end() {
    client_.exited = true;
    rules_.atEnd(violations_);
    return violations_;
  }

  Mac mac_;
  Client client_;
  WatchedRun run_{mac_, client_};
  ClipboardRules rules_{run_};
  Sentences violations_;
  Items saved_;
  std::int64_t own_ = 0;
};

TEST_F(clipboard_rules, is_given_back_whole) {
  take();
  giveBack();
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, may_never_be_touched) {
  userCopies();
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, must_be_given_back) {
  take();
  EXPECT_EQ(end(), Sentences{"I9: the clipboard is not what it was"});
}

TEST_F(clipboard_rules, must_not_come_back_in_part_or_another_order) {
  take();
  std::swap(saved_[0][0], saved_[0][1]);
  giveBack();
  EXPECT_EQ(end(), Sentences{"I9: the clipboard is not what it was"});
}

TEST_F(clipboard_rules, must_be_saved_before) {
  call(Function::clearPasteboard);
  EXPECT_EQ(end(), Sentences{"I9: the clipboard was cleared and not saved before"});
}

TEST_F(clipboard_rules, keeps_what_the_user_copies_meanwhile) {
  take();
  userCopies();
  giveBack();
  EXPECT_EQ(end(), Sentences{});
  EXPECT_EQ(pastedText(mac_.world.pasteboard), "newer");
}

TEST_F(clipboard_rules, must_not_lose_a_copy_that_was_seen) {
  take();
  userCopies();
  call(Function::pasteboardChangeCount);
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end(), Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, may_lose_a_copy_that_nobody_could_see) {
  take();
  call(Function::pasteboardChangeCount);
  userCopies();
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, may_lose_a_copy_that_came_before_its_own_count_was_read) {
  saved_ = driver::unpack<Items>(call(Function::pasteboardItems));
  call(Function::clearPasteboard);
  userCopies();
  call(Function::writeFilesToPasteboard, {pack(std::vector<std::string>{"/a"})});
  own_ = driver::unpack<std::int64_t>(call(Function::pasteboardChangeCount));
  run_.lastSleep = 300'000;
  giveBack();
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, may_stay_empty_when_it_refuses_what_it_held) {
  take();
  call(Function::clearPasteboard);
  const platform::Call refused{Function::writePasteboard, {pack(saved_)}};
  rules_.before({refused}, violations_);
  rules_.after({refused}, {pack(false), 0}, violations_);
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, is_given_back_only_when_the_reader_has_had_its_time) {
  take();
  run_.lastSleep = 299'999;
  giveBack();
  EXPECT_EQ(end(), Sentences{"I5: the clipboard is restored without the wait before it"});
}

}  // namespace

}  // namespace simulator
