#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-insert": when a text has landed, in fields that do with it what they like; and whose content
/// nobody misses.
namespace ax_insert_landing_test {

using namespace testing_support;

/// What "ax-insert" for a message gives, of a field without a frame of its own in the reply.
struct Seen {
  std::string method;
  std::string before;
  std::string value;  // of the field, as JSON; empty: none
  std::string texts;  // "textValue" and its mark, as JSON members; empty: none
  bool landed = true;
};

std::string reply(const Seen& what) {
  const std::string error =
      R"~("error":"text did not land in the field (value after write does not match)",)~";
  return success(R"({"before":")" + what.before +
                 R"(","element":{"frame":{"height":400,"width":700,"x":120,"y":130},)"
                 R"("label":"Body","role":"AXTextArea")" +
                 what.texts + (what.value.empty() ? "" : R"(,"value":)" + what.value) + "}," +
                 (what.landed ? "" : error) + R"("method":")" + what.method + R"(","ok":)" +
                 (what.landed ? "true" : "false") + "}");
}

std::string inWindow(const std::string& lines) {
  return R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
)" + lines;
}

std::string body(const std::string& words, const std::string& below = "") {
  return inWindow("            AXTextArea \"Body\" at 120,130 size 700x400 " + words + "\n" +
                  below);
}

Result message(TestMac& mac, const std::string& text) {
  return mac.driverWith({"ax-insert", "Notes", "Body", "200", "200", "message", text});
}

std::string texts(const std::string& text, bool complete) {
  return R"(,"textValue":")" + text + R"(","textValueComplete":)" + (complete ? "true" : "false");
}

/// Groups in one another, `count` of them, with `line` in the innermost; at this indentation.
std::string nested(std::size_t count, const std::string& line) {
  std::string lines;
  std::string indent = "                ";
  for (std::size_t i = 0; i < count; ++i, indent += " ") lines += indent + "AXGroup\n";
  return lines + indent + line + "\n";
}

TEST(ax_insert_landing, is_judged_without_white_space) {
  const std::pair<const char*, std::pair<const char*, const char*>> cases[] = {
      {"", {"a  b\n\nc ", R"("a  b\n\nc ")"}},
      {"transform one-line", {"a\nb", R"("a b")"}},
      {"transform trim", {"  hi\n", R"("hi")"}}};
  for (const auto& [words, written] : cases) {
    SCOPED_TRACE(words);
    TestMac mac(body(words));
    EXPECT_EQ(seen(message(mac, written.first)), reply({"value", "", written.second, ""}));
  }
}

TEST(ax_insert_landing, is_missed_when_the_field_makes_something_else_of_the_text) {
  const std::pair<const char*, const char*> cases[] = {
      {"transform upper", R"("HELLO YOU")"},
      {"transform first 8 characters", R"("Hello yo")"},
      {"ignores writes", R"("")"},
      {"half of writes", R"("Hell")"},
      {"late 151ms", R"("")"}};
  for (const auto& [words, value] : cases) {
    SCOPED_TRACE(words);
    TestMac mac(body(words));
    EXPECT_EQ(seen(message(mac, "Hello you")), reply({"value", "", value, "", false}));
  }
}

TEST(ax_insert_landing, waits_150_ms_for_a_late_field) {
  TestMac mac(body("late 150ms"));
  EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", ""}));
}

TEST(ax_insert_landing, happens_however_letters_are_composed) {
  TestMac mac(body("placeholder \"x\""));
  EXPECT_EQ(seen(message(mac, "cafe\u0301")), reply({"value", "", "\"cafe\u0301\"", ""}));
}

TEST(ax_insert_landing, cannot_be_seen_in_a_secure_field) {
  TestMac mac(body("subrole AXSecureTextField"));
  EXPECT_EQ(seen(message(mac, "pw")), reply({"value", "", "\"\u2022\u2022\"", "", false}));
}

TEST(ax_insert_landing, of_nothing_happens_in_a_field_that_shows_its_placeholder) {
  TestMac mac(body("placeholder \"Write\" shows placeholder value \"x\""));
  EXPECT_EQ(seen(message(mac, "")), reply({"value", "x", R"("Write")", ""}));
}

TEST(ax_insert_landing, of_a_label_is_missed_where_it_would_pass_for_decoration) {
  TestMac mac(body(""));
  EXPECT_EQ(seen(message(mac, "Body")), reply({"value", "", R"("Body")", "", false}));
}

TEST(ax_insert_landing, is_seen_in_the_static_texts_of_a_composer) {
  TestMac mac(body("composer"));
  EXPECT_EQ(seen(message(mac, "a\nb")), reply({"value", "", R"("a\nb")", texts("a\\nb", true)}));
  TestMac hidden(body("composer without value"));
  EXPECT_EQ(seen(message(hidden, "a\nb")), reply({"value", "", "", texts("a\\nb", true)}));
}

TEST(ax_insert_landing, believes_the_static_texts_before_the_value) {
  TestMac mac(body("", "                AXStaticText value \"old\"\n"));
  EXPECT_EQ(seen(message(mac, "new")), reply({"value", "", R"("new")", texts("old", true), false}));
  TestMac same(body("ignores writes", "                AXStaticText value \"new\"\n"));
  EXPECT_EQ(seen(message(same, "new")), reply({"value", "", R"("")", texts("new", true)}));
}

/// The reply to text that goes in somewhere, and the texts that the field shows afterwards.
std::pair<Seen, std::string> inserted(const char* mode, const std::string& words,
                                      const std::string& below = "") {
  TestMac mac(body(words, below));
  const Result run = mac.driverWith({"ax-insert", "Notes", "Body", "200", "200", mode, " PS"});
  Seen what;
  what.method = run.output.find("\"method\":\"selected\"") != std::string::npos ? "selected"
                : run.output.find("\"method\":\"value\"") != std::string::npos  ? "value"
                                                                                : "none";
  what.landed = run.output.find("\"ok\":true") != std::string::npos;
  std::string shown;
  for (const auto& element : mac.world().applications[0].elements) {
    if (element.removed || element.role != "AXStaticText") continue;
    shown += std::get<std::string>(element.attributes.at("AXValue")) + "|";
  }
  return {what, shown};
}

// What stands in it is none of the prior value, which is empty: written again, it would be gone.
TEST(ax_insert_landing, is_not_tried_again_where_a_text_that_only_shows_has_changed) {
  for (const char* mode : {"end", "new_line", "caret"}) {
    SCOPED_TRACE(mode);
    const auto [reply, shown] = inserted(mode, "value \"Dear Ada,\" composer without value");
    EXPECT_EQ(reply.method, "selected");
    EXPECT_FALSE(reply.landed);
    EXPECT_NE(shown.find("Dear Ada,"), std::string::npos) << shown;
    EXPECT_NE(shown.find(" PS"), std::string::npos) << shown;
  }
}

TEST(ax_insert_landing, is_tried_again_where_neither_value_nor_shown_text_has_changed) {
  const auto [reply, shown] =
      inserted("end", "value \"Dear Ada,\" composer rejects AXSelectedText");
  EXPECT_EQ(reply.method, "value");
  EXPECT_TRUE(reply.landed);
  EXPECT_EQ(shown, "Dear Ada, PS|");
}

TEST(ax_insert_landing, reads_nested_static_texts_in_order_and_skips_empty_ones) {
  TestMac mac(body("ignores writes", R"(                AXGroup
                    AXStaticText value "one"
                        AXStaticText value "two"
                    AXStaticText value ""
                AXStaticText value 3
                AXButton value "no"
                AXStaticText value "three"
)"));
  EXPECT_EQ(seen(message(mac, "one two  three")),
            reply({"value", "", R"("")", texts("one\\ntwo\\nthree", true)}));
}

TEST(ax_insert_landing, is_missed_where_inputs_are_nested) {
  for (const char* role : {"AXTextField", "AXTextArea", "AXComboBox", "AXSearchField"}) {
    for (const std::size_t groups : {0U, 2U}) {
      TestMac mac(body("", nested(groups, role)));
      EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", texts("", false), false}));
    }
  }
}

TEST(ax_insert_landing, is_missed_in_a_field_of_5000_static_texts) {
  TestMac mac(body("", "                AXStaticText repeat 5000\n"));
  EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", texts("", false), false}));
}

TEST(ax_insert_landing, is_judged_by_4096_elements_and_by_none_more) {
  TestMac mac(body("", "                AXStaticText repeat 4095\n"));
  EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", ""}));
  TestMac more(body("", "                AXStaticText repeat 4096\n"));
  EXPECT_EQ(seen(message(more, "Hi")), reply({"value", "", R"("Hi")", texts("", false), false}));
}

TEST(ax_insert_landing, is_judged_by_80_levels_and_by_none_more) {
  TestMac mac(body("ignores writes", nested(79, "AXStaticText value \"Hi\"")));
  EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("")", texts("Hi", true)}));
  TestMac more(body("ignores writes", nested(80, "AXStaticText value \"Hi\"")));
  EXPECT_EQ(seen(message(more, "Hi")), reply({"value", "", R"("")", texts("", false), false}));
}

TEST(ax_insert_landing, is_judged_by_40000_units_with_line_breaks_and_by_none_more) {
  // The last character takes two units, and each text is counted with a line break.
  const std::string most = std::string(39'995, 'x') + "\U0001F600";
  const std::string first = "                AXStaticText value \"y\"\n";
  const std::string second = "                AXStaticText value \"" + most + "\"\n";
  TestMac mac(body("ignores writes", first + second));
  EXPECT_EQ(seen(message(mac, "y " + most)),
            reply({"value", "", R"("")", texts("y\\n" + most, true)}));
  TestMac more(body("ignores writes", first + first + second));
  EXPECT_EQ(seen(message(more, "y y " + most)),
            reply({"value", "", R"("")", texts("", false), false}));
}

TEST(ax_insert_landing, is_missed_where_children_cannot_be_read) {
  for (const char* code : {"-25200", "-25204", "-25202"}) {
    TestMac mac(body("failing AXChildren " + std::string(code)));
    EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", texts("", false), false}));
  }
  for (const char* code : {"-25212", "-25205"}) {
    TestMac mac(body("failing AXChildren " + std::string(code)));
    EXPECT_EQ(seen(message(mac, "Hi")), reply({"value", "", R"("Hi")", ""}));
  }
}

/// The value of the first field called "Body" after "ax-insert … replace" of "new" over "old".
std::string replacedIn(const std::string& world) {
  TestMac mac(world);
  mac.driver("ax-insert Notes Body -1 -1 replace new");
  return mac.valueOf("Notes", "Body");
}

std::string window(const std::string& words, const std::string& lines) {
  return R"(
    display 1 1440x900
    app Notes pid 41
        window 6 "Archive" at 0,0 size 50x50
        window 7 "Inbox" at 100,80 size 800x600 )" +
         words + "\n" + lines;
}

std::string field(const std::string& role) {
  return role + R"( "Body" at 120,130 size 700x20 value "old")";
}

TEST(transient_field, is_a_single_line_in_a_sheet_or_a_dialog) {
  for (const char* role : {"AXTextField", "AXComboBox", "AXSearchField"}) {
    for (const char* words :
         {"sheet of 6", "subrole AXDialog", "subrole AXSystemDialog", "subrole AXFloatingWindow"}) {
      SCOPED_TRACE(words);
      EXPECT_EQ(replacedIn(window(words, "            " + field(role))), "new") << role;
    }
  }
}

TEST(transient_field, is_none_in_another_window) {
  for (const char* words : {"", "subrole AXApplicationDialog", "subrole AXUnknown",
                            "failing AXSubrole -25212", "modal"}) {
    SCOPED_TRACE(words);
    EXPECT_EQ(replacedIn(window(words, "            " + field("AXTextField"))), "old");
  }
}

TEST(transient_field, is_none_of_several_lines) {
  for (const char* words : {"sheet of 6", "subrole AXDialog"}) {
    EXPECT_EQ(replacedIn(window(words, "            " + field("AXTextArea"))), "old");
  }
}

TEST(transient_field, is_in_a_popover) {
  const std::string popover =
      "            AXPopover\n                AXGroup\n                    ";
  EXPECT_EQ(replacedIn(window("", popover + field("AXTextField"))), "new");
  EXPECT_EQ(replacedIn(window("", popover + field("AXTextArea"))), "old");
}

TEST(transient_field, has_its_popover_at_most_40_levels_above) {
  const std::string popover = "            AXPopover\n";
  EXPECT_EQ(replacedIn(window("", popover + nested(39, field("AXTextField")))), "new");
  EXPECT_EQ(replacedIn(window("", popover + nested(40, field("AXTextField")))), "old");
}

TEST(transient_field, is_none_when_a_parent_is_missing) {
  const std::string lost = field("AXTextField") + " failing AXParent -25212";
  EXPECT_EQ(replacedIn(window("subrole AXDialog", "            " + lost)), "old");
}

}  // namespace ax_insert_landing_test
