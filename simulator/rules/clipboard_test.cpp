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

  driver::Datum call(Function function, driver::Datum::List arguments = {}, std::size_t flow = 0) {
    const platform::Call made{function, std::move(arguments)};
    rules_.before({made, flow}, violations_);
    const Answer given = answer(mac_, client_, made, 0);
    rules_.after({made, flow}, given, violations_);
    return given.value;
  }

  std::int64_t count() {
    return driver::unpack<std::int64_t>(call(Function::pasteboardChangeCount));
  }

  void save() {
    saved_ = driver::unpack<std::optional<Items>>(call(Function::pasteboardItems)).value();
    count();
  }

  void take() {
    save();
    own_ = driver::unpack<std::int64_t>(call(Function::clearPasteboard));
    writeFiles();
    count();
    call(Function::sleep, {pack(std::uint32_t{300'000})});
  }

  void writeFiles() {
    call(Function::writeFilesToPasteboard, {pack(std::vector<std::string>{"/a"})});
  }

  void paste() { rules_.before({{Function::axPerform, {}}}, violations_); }

  void giveBack() {
    if (count() != own_) return;
    call(Function::clearPasteboard);
    call(Function::writePasteboard, {pack(saved_)});
  }

  /// The pasteboard refuses, or cannot be read: its answer is this one.
  void faulty(Function function, driver::Datum given) {
    const platform::Call made{function, {}};
    rules_.before({made}, violations_);
    rules_.after({made, 0, true}, {std::move(given), 0}, violations_);
  }

  void userCopies() { copyText(mac_.world.pasteboard, "newer"); }

  Sentences end(const ReplyFacts& reply = {}) {
    client_.exited = true;
    run_.reply = reply;
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
  count();
  call(Function::clearPasteboard);
  EXPECT_EQ(end(), Sentences{"I9: the clipboard was cleared and not saved before"});
}

TEST_F(clipboard_rules, is_not_pasted_from_after_it_has_refused_the_files) {
  save();
  call(Function::clearPasteboard);
  faulty(Function::writeFilesToPasteboard, pack(false));
  count();
  paste();
  EXPECT_EQ(violations_, Sentences{"I9: pasted although the clipboard had refused the files"});
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
  count();
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end(), Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, must_not_lose_a_copy_that_a_later_look_would_have_shown) {
  take();
  count();
  userCopies();
  call(Function::uptime);
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end(), Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, must_not_lose_a_copy_that_came_while_it_was_saved) {
  saved_ = driver::unpack<std::optional<Items>>(call(Function::pasteboardItems)).value();
  userCopies();
  call(Function::clearPasteboard);
  EXPECT_EQ(violations_, Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, may_lose_a_copy_that_came_while_another_flow_did_something) {
  take();
  count();
  userCopies();
  call(Function::uptime, {}, 1);
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end({.copyLost = true}), Sentences{});
}

TEST_F(clipboard_rules, must_be_looked_at_by_the_flow_that_clears_it) {
  take();
  call(Function::pasteboardChangeCount, {}, 1);
  userCopies();
  call(Function::clearPasteboard);
  EXPECT_EQ(violations_, Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, must_tell_of_a_copy_that_nobody_could_see) {
  take();
  count();
  userCopies();
  call(Function::clearPasteboard);
  call(Function::writePasteboard, {pack(saved_)});
  EXPECT_EQ(end({.copyLost = true}), Sentences{});
  EXPECT_EQ(end(), Sentences{"I9: a copy was lost, and the reply does not say so"});
}

TEST_F(clipboard_rules, must_tell_of_a_copy_that_came_before_the_first_clearing) {
  save();
  userCopies();
  own_ = driver::unpack<std::int64_t>(call(Function::clearPasteboard));
  call(Function::sleep, {pack(std::uint32_t{300'000})});
  giveBack();
  EXPECT_EQ(end({.copyLost = true}), Sentences{});
  EXPECT_EQ(end(), Sentences{"I9: a copy was lost, and the reply does not say so"});
}

TEST_F(clipboard_rules, must_not_tell_of_a_copy_that_was_not_lost) {
  take();
  giveBack();
  EXPECT_EQ(end({.copyLost = true}), Sentences{"I9: the reply tells of a lost copy, and none was"});
}

TEST_F(clipboard_rules, must_not_lose_a_copy_that_came_between_its_own_writing_and_the_count) {
  save();
  call(Function::clearPasteboard);
  writeFiles();
  userCopies();
  own_ = count();
  call(Function::sleep, {pack(std::uint32_t{300'000})});
  giveBack();
  EXPECT_EQ(end(), Sentences{"I9: a newer copy was overwritten"});
}

TEST_F(clipboard_rules, must_be_ones_own_when_it_is_pasted) {
  save();
  call(Function::clearPasteboard);
  writeFiles();
  paste();
  EXPECT_EQ(violations_, Sentences{"I9: pasted without knowing whose the clipboard is"});
  violations_.clear();
  count();
  paste();
  EXPECT_EQ(violations_, Sentences{});
  userCopies();
  count();
  paste();
  EXPECT_EQ(violations_, Sentences{"I9: pasted what somebody else has copied"});
}

TEST_F(clipboard_rules, must_be_known_to_be_ones_own_after_whatever_takes_time) {
  save();
  call(Function::clearPasteboard);
  writeFiles();
  for (const Function function : {Function::sleep, Function::axAttribute, Function::axAttributes}) {
    count();
    paste();
    EXPECT_EQ(violations_, Sentences{});
    rules_.after({{function, {}}}, {}, violations_);
    paste();
    EXPECT_EQ(violations_, Sentences{"I9: pasted without knowing whose the clipboard is"});
    violations_.clear();
  }
}

TEST_F(clipboard_rules, is_pasted_from_by_a_key_that_goes_down_and_no_modifier) {
  save();
  call(Function::clearPasteboard);
  writeFiles();
  const auto posted = [&](std::uint32_t type, std::int64_t code) {
    run_.latestEvent.type = type;
    run_.latestEvent.keyCode = code;
    rules_.before({{Function::publicPost, {}}}, violations_);
  };
  posted(10, 55);  // command goes down
  posted(11, 9);   // v comes up
  EXPECT_EQ(violations_, Sentences{});
  posted(10, 9);
  EXPECT_EQ(violations_, Sentences{"I9: pasted without knowing whose the clipboard is"});
}

TEST_F(clipboard_rules, must_not_be_cleared_when_it_could_not_be_read) {
  faulty(Function::pasteboardItems, pack(std::optional<Items>()));
  count();
  call(Function::clearPasteboard);
  EXPECT_EQ(violations_, Sentences{"I9: the clipboard was cleared and not saved before"});
}

TEST_F(clipboard_rules, must_not_be_cleared_when_nothing_on_it_could_be_read) {
  faulty(Function::pasteboardItems, pack(std::optional(Items(2))));
  count();
  call(Function::clearPasteboard);
  EXPECT_EQ(violations_, Sentences{"I9: a clipboard was cleared of which nothing could be read"});
}

TEST_F(clipboard_rules, may_stay_empty_when_it_refuses_what_it_held_and_the_reply_says_so) {
  take();
  count();
  call(Function::clearPasteboard);
  faulty(Function::writePasteboard, pack(false));
  EXPECT_EQ(end({.clipboardNotRestored = true}), Sentences{});
  EXPECT_EQ(end(), Sentences{"I9: the clipboard was not restored, and the reply does not say so"});
  userCopies();
  violations_.clear();
  EXPECT_EQ(end(), Sentences{});
}

TEST_F(clipboard_rules, must_not_be_called_lost_when_it_was_restored) {
  take();
  giveBack();
  EXPECT_EQ(end({.clipboardNotRestored = true}),
            Sentences{"I9: the reply says that the clipboard was not restored, and it was"});
}

TEST_F(clipboard_rules, is_given_back_only_when_the_reader_has_had_its_time) {
  take();
  call(Function::sleep, {pack(std::uint32_t{299'999})});
  giveBack();
  EXPECT_EQ(end(), Sentences{"I5: the clipboard is restored without the wait before it"});
}

}  // namespace

}  // namespace simulator
