#include <gtest/gtest.h>

#include "tests/support/inside.h"
#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// "ax-insert": where a text goes, in UTF-16 units, and what comes of a selection that cannot be
/// written.
namespace ax_insert_range_test {

using namespace testing_support;

std::string deskWith(const std::string& words, const std::string& more = "") {
  return R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 )" +
         words + "\n" + more;
}

std::string reply(const std::string& before, const std::string& method, const std::string& after,
                  bool landed) {
  return success(
      R"({"before":")" + before +
      R"(","element":{"frame":{"height":400,"width":700,"x":120,"y":130},"label":"Body",)"
      R"("role":"AXTextArea","value":")" +
      after + "\"}," +
      (landed
           ? ""
           : R"~("error":"text did not land in the field (value after write does not match)",)~") +
      R"("method":")" + method + R"(","ok":)" + (landed ? "true" : "false") + "}");
}

Result insertAt(TestMac& mac, const std::string& mode, const std::string& text) {
  return mac.driverWith({"ax-insert", "Notes", "Body", "200", "200", mode, text});
}

/// The calls that write a selection, with its location and length.
std::string writtenRanges(const TestMac& mac) {
  std::string ranges;
  for (const std::string& call : callsOf(mac, platform::Function::axSetAttribute)) {
    if (call.find("AXSelectedTextRange") != std::string::npos) ranges += call + "\n";
  }
  return ranges;
}

TEST(ax_insert_caret, replaces_the_selection) {
  TestMac mac(deskWith("value \"one two\" selection 4+3"));
  EXPECT_EQ(seen(insertAt(mac, "caret", "three")), reply("one two", "selected", "one three", true));
}

TEST(ax_insert_caret, puts_the_text_at_the_caret) {
  TestMac mac(deskWith("value \"one two\" selection 0+0"));
  EXPECT_EQ(seen(insertAt(mac, "caret", "no ")), reply("one two", "selected", "no one two", true));
}

TEST(ax_insert_caret, clamps_a_selection_to_the_text) {
  struct Case {
    const char* told;
    const char* written;
    const char* after;
  };
  const Case cases[] = {{"9+1", "[3 0]", "abcX"},       {"2+9", "[2 1]", "abX"},
                        {"-5+1", "[0 1]", "Xbc"},       {"1+-4", "[1 0]", "aXbc"},
                        {"1000000+5", "[3 0]", "abcX"}, {"0+3", "[0 3]", "X"},
                        {"3+0", "[3 0]", "abcX"}};
  for (const Case& each : cases) {
    SCOPED_TRACE(each.told);
    TestMac mac(
        deskWith("value \"abc\" attribute AXSelectedTextRange range " + std::string(each.told)));
    EXPECT_EQ(seen(insertAt(mac, "caret", "X")), reply("abc", "selected", each.after, true));
    EXPECT_NE(writtenRanges(mac).find(each.written), std::string::npos) << writtenRanges(mac);
  }
}

TEST(ax_insert_caret, goes_to_the_end_when_the_selection_cannot_be_read) {
  for (const char* words : {"failing AXSelectedTextRange -25212", "selection 0+1"}) {
    TestMac mac(deskWith("value \"abc\" " + std::string(words)));
    const bool readable = words[0] == 's';
    EXPECT_EQ(seen(insertAt(mac, "caret", "X")),
              reply("abc", "selected", readable ? "Xbc" : "abcX", true));
  }
}

TEST(ax_insert_caret, goes_to_the_end_when_the_selection_is_no_range) {
  TestMac mac(
      deskWith("value \"abc\" attribute AXSelectedTextRange 1 rejects AXSelectedTextRange"));
  EXPECT_EQ(seen(insertAt(mac, "caret", "X")), reply("abc", "value", "abcX", true));
}

TEST(ax_insert_caret, counts_utf16_units) {
  const std::pair<const char*, std::pair<const char*, const char*>> cases[] = {
      // Behind a character of two units, and over it.
      {"value \"a\\u{1F600}b\" selection 3+0", {"a\U0001F600b", "a\U0001F600Xb"}},
      {"value \"a\\u{1F600}b\" selection 1+2", {"a\U0001F600b", "aXb"}},
      // Between a letter and its mark, and over both.
      {"value \"e\\u{301}z\" selection 2+1", {"e\u0301z", "e\u0301X"}},
      {"value \"e\\u{301}z\" selection 0+2", {"e\u0301z", "Xz"}},
      {"value \"caf\\u{e9}!\" selection 4+1", {"caf\u00E9!", "caf\u00E9X"}},
      {"value \"\\u{4F60}\\u{597D}\" selection 1+1", {"\u4F60\u597D", "\u4F60X"}}};
  for (const auto& [words, texts] : cases) {
    SCOPED_TRACE(words);
    TestMac mac(deskWith(words));
    EXPECT_EQ(seen(insertAt(mac, "caret", "X")),
              reply(texts.first, "selected", texts.second, true));
  }
}

TEST(ax_insert_range, is_the_end_of_the_text_in_utf16_units) {
  TestMac mac(deskWith("value \"a\\u{1F600}e\\u{301}\" selection 0+1"));

  EXPECT_EQ(seen(insertAt(mac, "end", "X")),
            reply("a\U0001F600e\u0301", "selected", "a\U0001F600e\u0301X", true));
  EXPECT_NE(writtenRanges(mac).find("[5 0]"), std::string::npos) << writtenRanges(mac);
}

TEST(ax_insert_range, of_a_new_line_is_the_end_whatever_is_selected) {
  TestMac mac(deskWith("value \"abc\" selection 0+3"));
  EXPECT_EQ(seen(insertAt(mac, "new_line", "d")), reply("abc", "selected", "abc\\nd", true));
}

TEST(ax_insert_fallback, writes_the_value_when_the_selection_is_not_taken) {
  for (const char* words : {"rejects AXSelectedText", "rejects AXSelectedTextRange"}) {
    SCOPED_TRACE(words);
    TestMac mac(deskWith("value \"abc\" selection 1+1 " + std::string(words)));

    const Result run = insertAt(mac, "caret", "X");

    EXPECT_EQ(seen(run), reply("abc", "value", "aXc", true));
    // What was not written is not waited for.
    EXPECT_EQ(waits(mac), "150000");
    EXPECT_EQ(run.elapsed, 150'000);
  }
}

TEST(ax_insert_fallback, does_not_write_the_text_where_the_range_was_not_taken) {
  TestMac mac(deskWith("value \"abc\" rejects AXSelectedTextRange"));
  EXPECT_EQ(insertAt(mac, "end", "X").effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  write 41/7 AXFocused of AXTextArea "Body" true
    0 ms  write 41/7 AXSelectedTextRange of AXTextArea "Body" 3+0 LOST: it cannot be written there
    0 ms  write 41/7 AXValue of AXTextArea "Body" "abcX"
)");
}

TEST(ax_insert_fallback, comes_after_the_wait_when_the_field_ignored_the_selected_text) {
  TestMac mac(deskWith("value \"abc\" ignores writes"));

  const Result run = insertAt(mac, "end", "X");

  EXPECT_EQ(seen(run), reply("abc", "value", "abc", false));
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  write 41/7 AXFocused of AXTextArea "Body" true
    0 ms  write 41/7 AXSelectedTextRange of AXTextArea "Body" 3+0
    0 ms  write 41/7 AXSelectedText of AXTextArea "Body" "X": it holds "abc" now
  150 ms  write 41/7 AXValue of AXTextArea "Body" "abcX": it holds "abc" now
)");
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(ax_insert_fallback, that_is_not_taken_either_leaves_the_method_as_it_was) {
  TestMac none(deskWith("value \"abc\" rejects AXSelectedText rejects AXValue"));
  EXPECT_EQ(seen(insertAt(none, "end", "X")), reply("abc", "none", "abc", false));
  TestMac selected(deskWith("value \"abc\" ignores writes rejects AXValue -25204"));
  EXPECT_EQ(seen(insertAt(selected, "end", "X")), reply("abc", "selected", "abc", false));
}

TEST(ax_insert_fallback, spares_a_field_that_changed_in_another_way) {
  TestMac mac(deskWith("value \"abc\" half of writes"));

  const Result run = insertAt(mac, "end", "WXYZ");

  EXPECT_EQ(seen(run), reply("abc", "selected", "abcWX", false));
  EXPECT_EQ(run.effects.find("AXValue"), std::string::npos);
  EXPECT_EQ(run.elapsed, 300'000);
}

TEST(ax_insert_fallback, comes_when_only_white_space_changed) {
  TestMac mac(deskWith("value \"abc\" transform first 4 characters"));
  EXPECT_EQ(seen(insertAt(mac, "end", " X")), reply("abc", "value", "abc ", false));
}

TEST(ax_insert_fallback, comes_when_a_field_still_shows_its_placeholder) {
  TestMac mac(deskWith("placeholder \"Write\" shows placeholder rejects AXSelectedText"));
  EXPECT_EQ(seen(insertAt(mac, "end", "Hi")), reply("", "value", "Hi", true));
}

TEST(ax_insert_fallback, happens_while_a_late_write_is_still_on_its_way) {
  TestMac mac(deskWith("value \"abc\" late 200ms"));
  EXPECT_EQ(seen(insertAt(mac, "end", "X")), reply("abc", "value", "abcX", true));
}

TEST(ax_insert_locked, withholds_the_fallback) {
  for (const char* happening : {"lock", "leave console"}) {
    TestMac mac(
        deskWith("value \"abc\" ignores writes", "    at 100ms " + std::string(happening) + "\n"));

    const Result run = insertAt(mac, "end", "X");

    EXPECT_EQ(seen(run), reply("abc", "selected", "abc", false));
    EXPECT_EQ(run.effects.find("AXValue"), std::string::npos) << run.effects;
    EXPECT_EQ(run.elapsed, 300'000);
  }
}

TEST(ax_insert_locked, turns_a_success_without_its_fallback_into_the_refusal) {
  TestMac mac(deskWith("value \"abc\" late 200ms", "    at 100ms lock\n"));

  const Result run = insertAt(mac, "end", "X");

  EXPECT_EQ(seen(run),
            "1 {\"error\":\"the screen locked; input was withheld from the lock screen\","
            "\"locked\":true,\"ok\":false}\n");
  EXPECT_EQ(run.effects.find("AXValue"), std::string::npos) << run.effects;
}

TEST(ax_insert_locked, reports_what_had_been_written_before) {
  TestMac mac(deskWith("value \"abc\"", "    at 100ms lock\n"));
  EXPECT_EQ(seen(insertAt(mac, "end", "X")), reply("abc", "selected", "abcX", true));
  TestMac whole(deskWith("value \"abc\"", "    at 100ms lock\n"));
  EXPECT_EQ(seen(insertAt(whole, "message", "X")), reply("abc", "value", "X", true));
}

}  // namespace ax_insert_range_test
