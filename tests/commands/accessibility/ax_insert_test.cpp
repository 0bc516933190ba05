#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/simulated_run.h"

/// "ax-insert": which field is taken, what it refuses, and where each mode puts the text.
namespace ax_insert_test {

using namespace testing_support;
using Words = std::vector<std::string>;

/// A window with one line in it, and those below it.
std::string deskWith(const std::string& field, const std::string& application = "") {
  return R"(
    display 1 1440x900
    process 900
    app Browser pid 40 frontmost
    app Notes pid 41 )" +
         application + R"(
        window 7 "Inbox" at 100,80 size 800x600
            )" +
         field + "\n";
}

/// The line of a text area with these further words.
std::string body(const std::string& words) {
  return R"(AXTextArea "Body" at 120,130 size 700x400 )" + words;
}

std::string bodyInfo(const std::string& value) {
  return R"({"frame":{"height":400,"width":700,"x":120,"y":130},"label":"Body",)"
         R"("role":"AXTextArea","value":")" +
         value + "\"}";
}

std::string landed(const std::string& before, const std::string& method, const std::string& after) {
  return success(R"({"before":")" + before + R"(","element":)" + bodyInfo(after) +
                 R"(,"method":")" + method + R"(","ok":true})");
}

Words insert(const std::string& mode, const std::string& text, const Words& more = {}) {
  Words words = {"ax-insert", "Notes", "Body", "200", "200", mode, text};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

const std::string usage =
    "usage: ax-insert <app> <label> <x> <y> <replace|message|end|new_line|caret> <text> "
    "[ownedPriorJSON]";

TEST(ax_insert, with_too_few_words_is_answered_with_the_usage) {
  for (const char* line : {"ax-insert", "ax-insert Nobody", "ax-insert Notes Body 1 2 replace"}) {
    TestMac mac(deskWith(body("")));
    const Result run = mac.driver(line);
    EXPECT_EQ(seen(run), failure(usage));
    EXPECT_EQ(run.effects, "");
  }
}

TEST(ax_insert, checks_the_point_before_the_application) {
  TestMac mac(deskWith(body("")));
  EXPECT_EQ(seen(mac.driver("ax-insert Nobody Body one 2 replace x")),
            failure("missing numeric arg 4"));
  EXPECT_EQ(seen(mac.driver("ax-insert Nobody Body 1 two replace x")),
            failure("missing numeric arg 5"));
  EXPECT_EQ(seen(mac.driver("ax-insert Nobody Body 1 2 replace x")),
            failure("app not running: Nobody"));
}

TEST(ax_insert, replaces_through_the_value_and_reads_it_back_150_ms_later) {
  TestMac mac(deskWith(body("")));

  const Result run = mac.driverWith(insert("replace", "Hello"));

  EXPECT_EQ(seen(run), landed("", "value", "Hello"));
  EXPECT_EQ(run.elapsed, 150'000);
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  write 41/7 AXFocused of AXTextArea "Body" true
    0 ms  write 41/7 AXValue of AXTextArea "Body" "Hello"
)");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "Hello");
}

TEST(ax_insert, puts_a_text_at_the_end_through_the_selection_and_waits_twice) {
  for (const char* mode : {"end", "anything", "Replace", ""}) {
    SCOPED_TRACE(mode);
    TestMac mac(deskWith(body("value \"Hello\" selection 1+2")));

    const Result run = mac.driverWith(insert(mode, " you"));

    EXPECT_EQ(seen(run), landed("Hello", "selected", "Hello you"));
    EXPECT_EQ(waits(mac), "150000 150000");
    EXPECT_EQ(run.elapsed, 300'000);
    EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
    0 ms  write 41/7 AXFocused of AXTextArea "Body" true
    0 ms  write 41/7 AXSelectedTextRange of AXTextArea "Body" 5+0
    0 ms  write 41/7 AXSelectedText of AXTextArea "Body" " you": it holds "Hello you" now
)");
  }
}

TEST(ax_insert, begins_a_new_line_unless_the_field_is_empty_or_ends_with_one) {
  const std::pair<std::string, std::string> cases[] = {
      {"a", "a\\nb"}, {"a\\n", "a\\nb"}, {"", "b"}, {"\\n", "\\nb"}, {"a ", "a \\nb"}};
  for (const auto& [before, after] : cases) {
    SCOPED_TRACE(before);
    TestMac mac(deskWith(body("value \"" + before + "\"")));
    EXPECT_EQ(seen(mac.driverWith(insert("new_line", "b"))), landed(before, "selected", after));
  }
}

TEST(ax_insert, refuses_to_replace_what_was_not_written_in_this_run) {
  TestMac mac(deskWith(body("value \"Hello\"")));

  const Result run = mac.driverWith(insert("replace", "Bye"));

  EXPECT_EQ(
      seen(run),
      success(R"({"element":)" + bodyInfo("Hello") +
              R"(,"error":"the field already holds content that was not written in this run; )"
              R"(replace would destroy it","ok":false,"refused":true})"));
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "Hello");
}

TEST(ax_insert, replaces_what_is_one_of_the_owned_texts_white_space_aside) {
  for (const char* owned : {R"(["Hello you"])", R"(["x","  Hello \n you "])",
                            R"( [ "Hello\t\tyou", "" ] )", R"(["Hello you","Hello you"])"}) {
    SCOPED_TRACE(owned);
    TestMac mac(deskWith(body("value \"Hello  you\\n\"")));
    EXPECT_EQ(seen(mac.driverWith(insert("replace", "Bye", {owned}))),
              landed("Hello  you\\n", "value", "Bye"));
  }
}

TEST(ax_insert, owns_a_text_however_its_letters_are_composed) {
  TestMac mac(deskWith(body("value \"cafe\\u{301}\"")));
  EXPECT_EQ(seen(mac.driverWith(insert("replace", "x", {"[\"caf\u00E9\"]"}))),
            landed("cafe\u0301", "value", "x"));
}

TEST(ax_insert, owns_nothing_by_what_is_no_list_of_just_that_text) {
  for (const char* owned : {"", "Hello", "\"Hello\"", "{\"a\":\"Hello\"}", "[\"Hello\"", "[]",
                            "[\"hello\"]", "[\"Hello!\"]", "[\"Hell\"]", "[\"Hello\",1]",
                            "[[\"Hello\"]]", "[\"Hel lo\"]", "null", "[\"Hello\"] x"}) {
    SCOPED_TRACE(owned);
    TestMac mac(deskWith(body("value \"Hello\"")));
    mac.driverWith(insert("replace", "Bye", {owned}));
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "Hello");
  }
}

TEST(ax_insert, replaces_blanks_without_asking) {
  TestMac mac(deskWith(body("value \" \\n \"")));
  EXPECT_EQ(seen(mac.driverWith(insert("replace", "Bye"))), landed(" \\n ", "value", "Bye"));
}

TEST(ax_insert, replaces_for_a_message_without_asking) {
  TestMac mac(deskWith(body("value \"Hello\"")));

  const Result run = mac.driverWith(insert("message", "Bye"));

  EXPECT_EQ(seen(run), landed("Hello", "value", "Bye"));
  EXPECT_EQ(run.elapsed, 150'000);
}

TEST(ax_insert, asks_for_no_owned_texts_in_the_other_modes) {
  for (const char* mode : {"end", "new_line", "caret"}) {
    TestMac mac(deskWith(body("value \"Hello\\n\"")));
    EXPECT_EQ(seen(mac.driverWith(insert(mode, "Bye", {"[]"}))),
              landed("Hello\\n", "selected", "Hello\\nBye"));
  }
}

TEST(ax_insert, takes_decoration_shown_as_value_for_an_empty_field) {
  for (const char* words :
       {"placeholder \"Write  here\" value \" Write here\\n\"", "value \"Body\""}) {
    SCOPED_TRACE(words);
    TestMac mac(deskWith(body(words)));
    EXPECT_EQ(seen(mac.driverWith(insert("replace", "Bye"))), landed("", "value", "Bye"));
  }
}

TEST(ax_insert, takes_a_label_inside_the_value_for_content) {
  TestMac mac(deskWith(body("value \"Body of it\" placeholder \"Write\"")));
  mac.driverWith(insert("replace", "Bye"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "Body of it");
}

TEST(ax_insert, appends_to_a_shown_placeholder_as_to_nothing) {
  TestMac mac(deskWith(body("placeholder \"Write here\" shows placeholder")));
  EXPECT_EQ(seen(mac.driverWith(insert("end", "Hi"))), landed("", "selected", "Hi"));
}

TEST(ax_insert, gives_the_first_20000_characters_of_what_was_there) {
  std::string before;
  for (int i = 0; i < 2500; ++i) before += "12345678";
  TestMac mac(deskWith(body("value \"" + before + "\\u{1F600}\"")));
  EXPECT_EQ(seen(mac.driverWith(insert("message", "x"))), landed(before, "value", "x"));
}

TEST(ax_insert, finds_no_field_where_none_is) {
  const char* world = R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
            AXTextArea "Body" at 120,400 size 700x200
)";
  const std::pair<Words, const char*> cases[] = {
      {{"ax-insert", "Notes", "Send", "130", "95", "end", "x"}, "Send"},
      {{"ax-insert", "Notes", "No such", "130", "95", "end", "x"}, "No such"},
      {{"ax-insert", "Notes", "", "130", "95", "end", "x"}, ""},
      {{"ax-insert", "Notes", "Body", "470", "339", "end", "x"}, "Body"}};
  for (const auto& [words, label] : cases) {
    TestMac mac(world);
    const Result run = mac.driverWith(words);
    EXPECT_EQ(seen(run), success("{\"error\":\"no text input matches \\\"" + std::string(label) +
                                 "\\\" there\",\"ok\":false}"));
    EXPECT_EQ(run.elapsed, 0);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
  }
}

TEST(ax_insert, takes_a_field_160_points_away_and_none_farther) {
  TestMac near(deskWith(body("")));
  // The centre is at 470,330: above the frame at 170 points, left of it beyond.
  EXPECT_EQ(seen(near.driver("ax-insert Notes Body 470 130 end x")), landed("", "selected", "x"));
  TestMac edge(deskWith(R"(AXTextArea "Body" at 460,320 size 20x20)"));
  edge.driver("ax-insert Notes Body 470 170 end x");
  EXPECT_EQ(edge.valueOf("Notes", "Body"), "x");
  TestMac beyond(deskWith(R"(AXTextArea "Body" at 460,320 size 20x20)"));
  beyond.driver("ax-insert Notes Body 470 169.5 end x");
  EXPECT_EQ(beyond.valueOf("Notes", "Body"), "");
}

TEST(ax_insert, falls_back_to_the_field_at_the_point_when_a_button_has_the_label) {
  TestMac mac(deskWith(body("") + "\n            AXButton \"Body text\" at 830,130 size 40x20"));
  EXPECT_EQ(seen(mac.driverWith({"ax-insert", "Notes", "body TEXT", "800", "140", "end", "x"})),
            landed("", "selected", "x"));
}

TEST(ax_insert, without_a_label_takes_the_focused_field_before_the_one_at_the_point) {
  const std::string fields = body("focused") + R"(
            AXTextField "To" at 120,100 size 300x20)";
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driverWith({"ax-insert", "Notes", "", "130", "105", "end", "x"})),
            landed("", "selected", "x"));
}

TEST(ax_insert, without_a_label_takes_the_field_at_the_point_when_something_else_is_focused) {
  TestMac mac(deskWith(body("") + "\n            AXButton \"Ok\" at 130,90 size 9x9 focused"));
  EXPECT_EQ(seen(mac.driverWith({"ax-insert", "Notes", "", "200", "200", "end", "x"})),
            landed("", "selected", "x"));
}

TEST(ax_insert, with_a_blank_label_does_not_ask_for_the_focus) {
  const std::string fields = body("") + R"(
            AXTextField "To" at 120,100 size 300x20 focused)";
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driverWith({"ax-insert", "Notes", " ", "200", "200", "end", "x"})),
            landed("", "selected", "x"));
}

TEST(ax_insert, sees_only_fields_in_the_window_scope) {
  TestMac mac(deskWith(body("focused")));
  const Environment elsewhere = {{"CU_WINDOW", "Archive"}};
  for (const char* label : {"Body", ""}) {
    EXPECT_EQ(
        seen(mac.driverWith({"ax-insert", "Notes", label, "200", "200", "end", "x"}, elsewhere)),
        success("{\"error\":\"no text input matches \\\"" + std::string(label) +
                "\\\" there\",\"ok\":false}"));
  }
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
}

TEST(ax_insert, takes_whatever_is_editable) {
  const std::string group = R"(AXGroup "Page" at 120,130 size 700x400 attribute AXEditable true )"
                            R"(value "" attribute AXSelectedTextRange range 0+0)";
  TestMac mac(deskWith(group));
  EXPECT_EQ(seen(mac.driver("ax-insert Notes Page 200 200 replace x")),
            success(R"({"before":"","element":{"frame":{"height":400,"width":700,"x":120,"y":130},)"
                    R"("label":"Page","role":"AXGroup","value":"x"},"method":"value","ok":true})"));
}

}  // namespace ax_insert_test
