#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-focus", "ax-focused" and "ax-set-value".
namespace ax_focus_test {

using namespace testing_support;

std::string deskWith(const std::string& lines, const std::string& application = "") {
  return R"(
    display 1 1440x900
    app Notes pid 41 )" +
         application + R"(
        window 7 "Inbox" at 100,80 size 800x600
)" + lines;
}

const std::string fields = R"(
            AXTextField "To" at 120,90 size 300x20 value "Ada"
            AXButton "Send" at 430,90 size 60x20
            AXTextArea "Body" at 120,130 size 700x400 value "Hello"
)";

std::string info(const std::string& label, const std::string& role, const std::string& frame,
                 const std::string& members = "") {
  return R"({"frame":)" + frame + R"(,"label":")" + label + R"(","role":")" + role + '"' + members +
         "}";
}

const std::string bodyFrame = R"({"height":400,"width":700,"x":120,"y":130})";
const std::string toFrame = R"({"height":20,"width":300,"x":120,"y":90})";
const std::string sendFrame = R"({"height":20,"width":60,"x":430,"y":90})";
const std::string nobody = success(R"({"element":null,"ok":true})");
const std::string noElement = success(R"({"error":"no element","ok":false})");

const std::string enabling = R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)";

TEST(ax_focus, gives_the_matched_field_the_focus) {
  TestMac mac(deskWith(fields));

  const Result run = mac.driver("ax-focus Notes body 130 140");

  EXPECT_EQ(seen(run), success(R"({"element":)" +
                               info("Body", "AXTextArea", bodyFrame, R"(,"value":"Hello")") +
                               R"(,"matchedBy":"label","ok":true})"));
  EXPECT_EQ(run.effects, enabling + "    0 ms  write 41/7 AXFocused of AXTextArea \"Body\" true\n");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(ax_focus, says_how_it_matched_and_whether_the_focus_was_taken) {
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driver("ax-focus Notes Sen 440 95")),
            success(R"({"element":)" + info("Send", "AXButton", sendFrame) +
                    R"(,"matchedBy":"label~","ok":false})"));
  EXPECT_EQ(seen(mac.driver("ax-focus Notes Nothing 130 95")),
            success(R"({"element":)" + info("To", "AXTextField", toFrame, R"(,"value":"Ada")") +
                    R"(,"matchedBy":"hit","ok":true})"));
  TestMac refusing(
      deskWith("            AXTextField \"To\" at 120,90 size 300x20 "
               "rejects AXFocused -25200\n"));
  EXPECT_EQ(seen(refusing.driver("ax-focus Notes To 130 95")),
            success(R"({"element":)" + info("To", "AXTextField", toFrame, R"(,"value":"")") +
                    R"(,"matchedBy":"label","ok":false})"));
}

TEST(ax_focus, needs_an_element_in_reach) {
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driver("ax-focus Notes Nothing 1300 800")), noElement);
  EXPECT_EQ(
      seen(mac.driver("ax-focus Notes Send 460 261")),
      success(R"({"element":)" + info("Body", "AXTextArea", bodyFrame, R"(,"value":"Hello")") +
              R"(,"matchedBy":"hit","ok":true})"));
  EXPECT_EQ(
      seen(mac.driverWith({"ax-focus", "Notes", "Send", "440", "95"}, {{"CU_WINDOW", "Archive"}})),
      noElement);
}

TEST(ax_focus, needs_its_words) {
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driver("ax-focus Notes Body 1")),
            failure("usage: ax-focus <app> <label> <x> <y>"));
  EXPECT_EQ(seen(mac.driver("ax-focus Nobody Body one 1")), failure("missing numeric arg 4"));
  EXPECT_EQ(seen(mac.driver("ax-focus Nobody Body 1 1")), failure("app not running: Nobody"));
}

TEST(ax_focused, describes_the_focused_field_with_its_caret) {
  TestMac mac(
      deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 value "
               "\"a\\u{1F600}b\" focused selection 1+2\n"));

  const Result run = mac.driver("ax-focused Notes");

  EXPECT_EQ(seen(run),
            success(R"({"element":{"caret":1,"frame":)" + bodyFrame +
                    R"(,"label":"Body","length":4,"role":"AXTextArea","selected":2,"tail":"a)" +
                    "\U0001F600" + R"(b","value":"a)" + "\U0001F600" + R"(b"},"ok":true})"));
  EXPECT_EQ(run.effects, enabling);
}

TEST(ax_focused, gives_the_whole_value_and_its_last_120_units) {
  std::string value;
  for (int i = 0; i < 500; ++i) value += "12345";
  const std::string tail = value.substr(0, 118) + "\U0001F600";
  TestMac mac(deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 focused value \"" +
                       value + tail + "\" failing AXSelectedTextRange -25212\n"));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")),
            success(R"({"element":{"frame":)" + bodyFrame +
                    R"(,"label":"Body","length":2620,"role":"AXTextArea","tail":")" + tail +
                    R"(","value":")" + value + tail + R"("},"ok":true})"));
}

TEST(ax_focused, says_nothing_of_a_value_that_is_no_text) {
  TestMac mac(
      deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 focused "
               "failing AXValue -25212\n"));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")),
            success(R"({"element":)" + info("Body", "AXTextArea", bodyFrame) + R"(,"ok":true})"));
}

TEST(ax_focused, describes_what_the_application_says_even_if_it_takes_no_text) {
  TestMac mac(deskWith("            AXGroup \"Send\" at 430,90 size 60x20 value \"x\"\n",
                       "attribute AXFocusedUIElement element \"Send\""));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")),
            success(R"({"element":)" + info("Send", "AXGroup", sendFrame, R"(,"value":"x")") +
                    R"(,"ok":true})"));
}

TEST(ax_focused, is_null_when_nothing_is) {
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")), nobody);
}

TEST(ax_focused, keeps_to_the_window_scope) {
  const std::string line =
      "            AXTextField \"To\" at 120,90 size 300x20 focused attribute AXFocused false\n";
  TestMac mac(deskWith(line));
  const std::string found =
      success(R"({"element":{"caret":0,"frame":)" + toFrame +
              R"(,"label":"To","length":0,"role":"AXTextField","selected":0,"tail":"","value":""},)"
              R"("ok":true})");
  EXPECT_EQ(seen(mac.driver("ax-focused Notes", {{"CU_WINDOW", "inbox"}})), found);
  EXPECT_EQ(seen(mac.driver("ax-focused Notes", {{"CU_WINDOW", "archive"}})), nobody);
  // An element in no window is in no scope, but found without one.
  TestMac lost(
      deskWith("            AXTextField \"To\" at 120,90 size 300x20 focused "
               "attribute AXFocused false failing AXWindow -25212\n"));
  EXPECT_EQ(seen(lost.driver("ax-focused Notes", {{"CU_WINDOW", "inbox"}})), nobody);
  EXPECT_EQ(seen(lost.driver("ax-focused Notes")), found);
}

TEST(ax_focused, searches_when_the_application_does_not_say) {
  const std::string unsaid = "failing AXFocusedUIElement -25212";
  const std::string found =
      success(R"({"element":{"caret":3,"frame":)" + toFrame +
              R"(,"label":"To","length":3,"role":"AXTextField","selected":0,"tail":"Ada",)"
              R"("value":"Ada"},"ok":true})");
  TestMac mac(
      deskWith("            AXTextField \"To\" at 120,90 size 300x20 value \"Ada\" focused\n"
               "            AXButton \"Send\" at 1,1 size 9x9 attribute AXFocused true\n"
               "            AXTextField \"Cc\" at 120,110 size 300x20\n",
               unsaid));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")), found);
  EXPECT_EQ(seen(mac.driver("ax-focused Notes", {{"CU_WINDOW", "archive"}})), nobody);
}

TEST(ax_focused, is_null_when_two_fields_are) {
  TestMac mac(
      deskWith("            AXTextField \"To\" at 120,90 size 300x20 focused\n"
               "            AXTextArea \"Body\" at 1,1 size 9x9 attribute AXFocused true\n",
               "failing AXFocusedUIElement -25212"));
  EXPECT_EQ(seen(mac.driver("ax-focused Notes")), nobody);
}

TEST(ax_focused, finds_what_is_editable_and_60_levels_deep) {
  for (const std::size_t levels : {59U, 60U}) {
    std::string lines;
    std::string indent = "            ";
    for (std::size_t i = 0; i < levels; ++i, indent += " ") lines += indent + "AXGroup\n";
    lines += indent +
             "AXGroup \"To\" at 120,90 size 300x20 value \"\" attribute AXEditable true "
             "attribute AXFocused true failing AXSelectedTextRange -25212\n";
    TestMac mac(deskWith(lines, "failing AXFocusedUIElement -25212"));
    EXPECT_EQ(seen(mac.driver("ax-focused Notes")),
              levels == 60 ? nobody
                           : success(R"({"element":{"frame":)" + toFrame +
                                     R"(,"label":"To","length":0,"role":"AXGroup","tail":"",)"
                                     R"("value":""},"ok":true})"));
  }
}

TEST(ax_focused, needs_its_words) {
  TestMac mac(deskWith(""));
  EXPECT_EQ(seen(mac.driver("ax-focused")), failure("usage: ax-focused <app>"));
  EXPECT_EQ(seen(mac.driver("ax-focused Nobody")), failure("app not running: Nobody"));
}

TEST(ax_set_value, writes_whatever_is_there_and_describes_it_200_ms_later) {
  TestMac mac(
      deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 value \"Hello\" "
               "late 200ms\n"));

  const Result run = mac.driverWith({"ax-set-value", "Notes", "200", "200", "Good bye"});

  EXPECT_EQ(seen(run), success(R"({"axError":0,"element":)" +
                               info("Body", "AXTextArea", bodyFrame, R"(,"value":"Good bye")") +
                               R"(,"ok":true})"));
  EXPECT_EQ(run.elapsed, 200'000);
  EXPECT_EQ(run.effects, enabling +
                             "    0 ms  write 41/7 AXFocused of AXTextArea \"Body\" true\n    0 ms "
                             " write 41/7 AXValue of AXTextArea \"Body\" \"Good bye\": comes "
                             "later\n  200 ms  landing 41/7 AXValue \"Good bye\"\n");
}

TEST(ax_set_value, does_not_judge_what_came_of_it) {
  TestMac mac(deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 ignores writes\n"));
  EXPECT_EQ(seen(mac.driver("ax-set-value Notes 200 200 x")),
            success(R"({"axError":0,"element":)" +
                    info("Body", "AXTextArea", bodyFrame, R"(,"value":"")") + R"(,"ok":true})"));
}

TEST(ax_set_value, reports_the_code_of_a_refused_write) {
  TestMac mac(
      deskWith("            AXTextArea \"Body\" at 120,130 size 700x400 "
               "rejects AXValue -25200 rejects AXFocused\n"));

  const Result run = mac.driver("ax-set-value Notes 200 200 x");

  EXPECT_EQ(seen(run),
            success(R"({"axError":-25200,"element":)" +
                    info("Body", "AXTextArea", bodyFrame, R"(,"value":"")") + R"(,"ok":false})"));
  EXPECT_EQ(run.elapsed, 200'000);
}

TEST(ax_set_value, needs_an_element_at_the_point_and_in_scope) {
  TestMac mac(deskWith(fields));
  const Result run = mac.driver("ax-set-value Notes 1300 800 x");
  EXPECT_EQ(seen(run), noElement);
  EXPECT_EQ(run.elapsed, 0);
  EXPECT_EQ(seen(mac.driver("ax-set-value Notes 200 200 x", {{"CU_WINDOW", "archive"}})),
            noElement);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "Hello");
}

TEST(ax_set_value, needs_its_words) {
  TestMac mac(deskWith(fields));
  EXPECT_EQ(seen(mac.driver("ax-set-value Notes 1 2")),
            failure("usage: ax-set-value <app> <x> <y> <text>"));
  EXPECT_EQ(seen(mac.driver("ax-set-value Nobody 1 y x")), failure("missing numeric arg 4"));
  EXPECT_EQ(seen(mac.driver("ax-set-value Nobody 1 2 x")), failure("app not running: Nobody"));
}

}  // namespace ax_focus_test
