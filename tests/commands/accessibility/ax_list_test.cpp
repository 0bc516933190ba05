#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-list": the controls that show.
namespace ax_list_test {

using namespace testing_support;

/// A window with these elements, each on a line of its own.
std::string windowOf(const std::string& elements) {
  return R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)" + elements;
}

std::string listOf(const std::string& world, const Environment& environment = {}) {
  TestMac mac(world);
  return seen(mac.driver("ax-list Notes", environment));
}

std::string listed(const std::string& elements) {
  return success(R"({"elements":[)" + elements + R"(],"ok":true})");
}

std::string plain(const std::string& role, const std::string& label) {
  return R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":")" + label + R"(","role":")" +
         role + "\"}";
}

TEST(ax_list, visits_the_last_window_first_and_of_siblings_the_last) {
  EXPECT_EQ(listOf(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "A" at 120,90 size 60x20
            AXGroup "Bar"
                AXLink "B" at 120,90 size 60x20
                AXGroup
                    AXTab "C" at 120,90 size 60x20
                AXCell "D" at 120,90 size 60x20
            AXRow "E" at 120,90 size 60x20
                AXCell "F" at 120,90 size 60x20
        window 8 "Draft" at 100,80 size 800x600
            AXMenuItem "G" at 120,90 size 60x20
)"),
            listed(plain("AXMenuItem", "G") + "," + plain("AXRow", "E") + "," +
                   plain("AXCell", "F") + "," + plain("AXCell", "D") + "," + plain("AXTab", "C") +
                   "," + plain("AXLink", "B") + "," + plain("AXButton", "A")));
}

TEST(ax_list, has_exactly_the_roles_that_can_be_acted_on) {
  for (const char* role :
       {"AXButton", "AXLink", "AXMenuItem", "AXMenuButton", "AXPopUpButton", "AXCheckBox",
        "AXRadioButton", "AXRow", "AXCell", "AXTab", "AXDisclosureTriangle"}) {
    EXPECT_EQ(
        listOf(windowOf("            " + std::string(role) + " \"A\" at 120,90 size 60x20\n")),
        listed(plain(role, "A")));
  }
  for (const char* role :
       {"AXSlider", "AXGroup", "AXStaticText", "AXImage", "AXMenu", "AXButtons", "AXbutton"}) {
    EXPECT_EQ(
        listOf(windowOf("            " + std::string(role) + " \"A\" at 120,90 size 60x20\n")),
        listed(""));
  }
}

TEST(ax_list, shows_fields_with_their_values_and_their_inner_texts) {
  for (const char* role : {"AXTextArea", "AXTextField", "AXComboBox", "AXSearchField"}) {
    EXPECT_EQ(listOf(windowOf("            " + std::string(role) +
                              " \"To\" at 120,90 size 60x20 value \"Ada\"\n")),
              listed(R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"To","role":")" +
                     std::string(role) + R"(","value":"Ada"})"));
  }
  EXPECT_EQ(
      listOf(windowOf(R"(
            AXTextArea "To" at 120,90 size 60x20 value "Ada Bob"
                AXStaticText value "Ada"
                AXStaticText value "Bob"
)")),
      listed(
          R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"To","role":"AXTextArea","textValue":"Ada\nBob","textValueComplete":true,"value":"Ada Bob"})"));
}

TEST(ax_list, says_when_a_fields_text_could_not_be_read_whole) {
  EXPECT_EQ(
      listOf(windowOf(R"(
            AXTextArea "To" at 120,90 size 60x20 failing AXChildren -25204
)")),
      listed(
          R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"To","role":"AXTextArea","textValue":"","textValueComplete":false,"value":""})"));
}

TEST(ax_list, has_the_value_only_when_it_is_a_text) {
  EXPECT_EQ(
      listOf(windowOf("            AXLink \"A\" at 120,90 size 60x20 value \"\"\n")),
      listed(
          R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"A","role":"AXLink","value":""})"));
  for (const char* value : {"1", "1.5", "true", "nan"}) {
    EXPECT_EQ(listOf(windowOf("            AXButton \"A\" at 120,90 size 60x20 value " +
                              std::string(value) + "\n")),
              listed(plain("AXButton", "A")))
        << value;
  }
}

TEST(ax_list, cuts_values_to_2000_characters) {
  std::string letters;
  for (int i = 0; i < 2000; ++i) letters += "e\u0301";
  EXPECT_EQ(listOf(windowOf("            AXLink \"A\" at 120,90 size 60x20 value \"" + letters +
                            "x\"\n")),
            listed(R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"A",)"
                   R"("role":"AXLink","value":")" +
                   letters + "\"}"));
}

TEST(ax_list, says_what_is_disabled_and_nothing_of_what_is_not) {
  EXPECT_EQ(
      listOf(windowOf("            AXButton \"A\" at 120,90 size 60x20 disabled\n")),
      listed(
          R"({"disabled":true,"frame":{"height":20,"width":60,"x":120,"y":90},"label":"A","role":"AXButton"})"));
  for (const char* state : {"attribute AXEnabled true", "attribute AXEnabled 0",
                            "attribute AXEnabled \"false\"", "failing AXEnabled -25204"}) {
    EXPECT_EQ(listOf(windowOf("            AXButton \"A\" at 120,90 size 60x20 " +
                              std::string(state) + "\n")),
              listed(plain("AXButton", "A")))
        << state;
  }
}

TEST(ax_list, omits_what_is_not_wider_and_higher_than_a_point) {
  for (const char* frame :
       {"at 120,90 size 1x20", "at 120,90 size 60x1", "at 120,90 size 0x0", "at 120,90 size -9x20",
        "at 120,90 size nanx20", "at nan,90 size 60x20", "at 120,inf size 60x20", ""}) {
    EXPECT_EQ(listOf(windowOf("            AXButton \"A\" " + std::string(frame) + "\n")),
              listed(""))
        << frame;
  }
  EXPECT_EQ(
      listOf(windowOf("            AXButton \"A\" at 120,90 size 1.5x1.25\n")),
      listed(
          R"({"frame":{"height":1.25,"width":1.5,"x":120,"y":90},"label":"A","role":"AXButton"})"));
}

TEST(ax_list, goes_on_below_what_it_omits) {
  EXPECT_EQ(listOf(windowOf(R"(
            AXButton "Outer" at 120,90 size 1x1
                AXButton "Inner" at 120,90 size 60x20
)")),
            listed(plain("AXButton", "Inner")));
}

TEST(ax_list, labels_a_control_by_the_text_inside_it_as_it_stands) {
  EXPECT_EQ(listOf(windowOf(R"(
            AXButton at 120,90 size 60x20
                AXImage
                    AXStaticText value " Send  "
                AXStaticText value ""
                AXStaticText value "NOW"
)")),
            listed(plain("AXButton", " Send   NOW")));
}

TEST(ax_list, cuts_such_a_label_to_40_elements_and_120_characters) {
  EXPECT_EQ(listOf(windowOf(R"(
            AXButton at 120,90 size 60x20
                AXStaticText value "ab" repeat 60
)")),
            listed(plain("AXButton", [] {
              std::string label = "ab";
              for (int i = 1; i < 39; ++i) label += " ab";  // the button is the first of the 40
              return label;
            }())));
  EXPECT_EQ(
      listOf(windowOf("            AXButton at 120,90 size 60x20\n"
                      "                AXStaticText value \"" +
                      std::string(119, 'a') + "\"\n                AXStaticText value \"bc\"\n")),
      listed(plain("AXButton", std::string(119, 'a') + " ")));
}

TEST(ax_list, never_labels_a_field_by_the_text_inside_it) {
  EXPECT_EQ(
      listOf(windowOf(R"(
            AXTextArea at 120,90 size 60x20
                AXStaticText value "Ada"
)")),
      listed(
          R"({"frame":{"height":20,"width":60,"x":120,"y":90},"label":"","role":"AXTextArea","textValue":"Ada","textValueComplete":true,"value":""})"));
}

TEST(ax_list, prefers_title_description_placeholder_and_help_in_this_order) {
  const auto with = [](const std::string& texts) {
    return listOf(windowOf("            AXButton " + texts + "\n"));
  };
  const std::string rest = "at 120,90 size 60x20 help \"H\"";
  EXPECT_EQ(with("\"T\" description \"D\" placeholder \"P\" " + rest),
            listed(plain("AXButton", "T")));
  EXPECT_EQ(with("\"\" description \"D\" placeholder \"P\" " + rest),
            listed(plain("AXButton", "D")));
  EXPECT_EQ(with("attribute AXTitle 5 failing AXDescription -25204 placeholder \"P\" " + rest),
            listed(plain("AXButton", "P")));
  EXPECT_EQ(with(rest), listed(plain("AXButton", "H")));
  EXPECT_EQ(with("at 120,90 size 60x20"), listed(plain("AXButton", "")));
}

TEST(ax_list, has_at_most_400_entries) {
  std::string entries;
  for (int i = 0; i < 400; ++i) entries += (i > 0 ? "," : "") + plain("AXButton", "A");
  EXPECT_EQ(listOf(windowOf(R"(
            AXGroup
                AXButton "First" at 120,90 size 60x20
                AXButton "A" at 120,90 size 60x20 repeat 400
)")),
            listed(entries));
}

TEST(ax_list, sees_only_the_windows_in_scope) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "A" at 120,90 size 60x20
        window 8 "Draft" at 100,80 size 800x600
            AXButton "B" at 120,90 size 60x20
        AXMenuBar
            AXMenuItem "C" at 120,90 size 60x20
)";
  EXPECT_EQ(listOf(world, {{"CU_WINDOW", "Inbox"}}), listed(plain("AXButton", "A")));
  EXPECT_EQ(listOf(world, {{"CU_WINDOW", "Other"}}), listed(""));
  EXPECT_EQ(listOf(world), listed(plain("AXButton", "B") + "," + plain("AXButton", "A")));
}

TEST(ax_list, survives_answers_of_the_wrong_kind) {
  EXPECT_EQ(listOf(windowOf(R"(
            AXGroup attribute AXRole 5
                AXButton "A" at 120,90 size 60x20
            AXGroup attribute AXChildren "none"
                AXButton "Hidden" at 120,90 size 60x20
            AXButton "B" at 120,90 size 60x20 attribute AXPosition size 1x2
            AXButton "C" at 120,90 size 60x20 attribute AXSize 7
            AXButton "D" at 120,90 size 60x20 attribute AXRole "AXGroup"
)")),
            listed(plain("AXButton", "A")));
}

}  // namespace ax_list_test
