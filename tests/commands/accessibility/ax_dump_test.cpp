#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-dump": everything that an application's windows hold.
namespace ax_dump_test {

using namespace testing_support;

std::string dumpOf(const std::string& world, const Environment& environment = {}) {
  TestMac mac(world);
  return seen(mac.driver("ax-dump Notes", environment));
}

std::string dumped(const std::string& elements) {
  return success(R"({"elements":[)" + elements + R"(],"ok":true})");
}

constexpr const char* untitledWindow =
    R"({"depth":0,"frame":{"height":9,"width":9,"x":0,"y":0},"label":"","role":"AXWindow","subrole":"AXStandardWindow"})";

/// What is dumped of the one element of a window without a title.
std::string dumpOfElement(const std::string& element) {
  return dumpOf("app Notes pid 41\n    window 7 at 0,0 size 9x9\n        " + element + "\n");
}

std::string dumpedElement(const std::string& element) {
  return dumped(untitledWindow + ("," + element));
}

TEST(ax_dump, lists_the_last_window_first_and_each_tree_in_reading_order) {
  EXPECT_EQ(dumpOf(R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600 subrole AXDialog
            AXGroup "A"
                AXButton "B" at 120,90 size 60x20
                AXGroup "C"
                    AXLink "D"
                AXGroup "E"
            AXGroup "F"
        window 8 at 0,0 size 9x9
            AXGroup "G"
)"),
            dumped(std::string(untitledWindow) + R"(,{"depth":1,"label":"G","role":"AXGroup"},)" +
                   R"({"depth":0,"frame":{"height":600,"width":800,"x":100,"y":80},)"
                   R"("label":"Inbox","role":"AXWindow","subrole":"AXDialog"},)"
                   R"({"depth":1,"label":"A","role":"AXGroup"},)"
                   R"({"depth":2,"frame":{"height":20,"width":60,"x":120,"y":90},)"
                   R"("label":"B","role":"AXButton"},)"
                   R"({"depth":2,"label":"C","role":"AXGroup"},)"
                   R"({"depth":3,"label":"D","role":"AXLink"},)"
                   R"({"depth":2,"label":"E","role":"AXGroup"},)"
                   R"({"depth":1,"label":"F","role":"AXGroup"})"));
}

TEST(ax_dump, shows_numbers_as_decimal_texts) {
  const auto shown = [](const std::string& value) {
    return dumpedElement(R"({"depth":1,"label":"S","role":"AXSlider","value":")" + value + "\"}");
  };
  EXPECT_EQ(dumpOfElement("AXSlider \"S\" value 3"), shown("3"));
  EXPECT_EQ(dumpOfElement("AXSlider \"S\" value -2"), shown("-2"));
  EXPECT_EQ(dumpOfElement("AXSlider \"S\" value 0.5"), shown("0.5"));
  EXPECT_EQ(dumpOfElement("AXSlider \"S\" value 9007199254740993"), shown("9007199254740993"));
  EXPECT_EQ(dumpOfElement("AXSlider \"S\" value \"half\""), shown("half"));
}

TEST(ax_dump, shows_no_value_that_is_no_text_and_no_number) {
  const std::string without = dumpedElement(R"({"depth":1,"label":"S","role":"AXSlider"})");
  for (const char* value :
       {"", "value nan", "attribute AXValue inf", "attribute AXValue point 1,2",
        "attribute AXValue range 1+2", "attribute AXValue opaque 5", "failing AXValue -25204"}) {
    EXPECT_EQ(dumpOfElement(std::string("AXSlider \"S\" ") + value), without) << value;
  }
}

TEST(ax_dump, shows_the_state_of_check_boxes) {
  EXPECT_EQ(dumpOfElement("AXCheckBox \"C\" value 1"),
            dumpedElement(R"({"depth":1,"label":"C","role":"AXCheckBox","value":"1"})"));
}

TEST(ax_dump, shows_the_subrole_when_it_is_a_text) {
  EXPECT_EQ(dumpOfElement("AXGroup \"A\" subrole AXDialog"),
            dumpedElement(R"({"depth":1,"label":"A","role":"AXGroup","subrole":"AXDialog"})"));
  EXPECT_EQ(dumpOfElement("AXGroup \"A\" attribute AXSubrole 5"),
            dumpedElement(R"({"depth":1,"label":"A","role":"AXGroup"})"));
}

TEST(ax_dump, does_not_label_by_inner_texts) {
  EXPECT_EQ(dumpOfElement("AXButton\n            AXStaticText value \"Send\""),
            dumpedElement(R"({"depth":1,"label":"","role":"AXButton"},)"
                          R"({"depth":2,"label":"","role":"AXStaticText","value":"Send"})"));
}

TEST(ax_dump, shows_what_can_hardly_be_read) {
  EXPECT_EQ(dumpOfElement("AXGroup failing AXRole -25204 failing AXTitle -25204 "
                          "failing AXPosition -25204 failing AXSubrole -25212"),
            dumpedElement(R"({"depth":1,"label":"","role":""})"));
  EXPECT_EQ(dumpOfElement("AXGroup at nan,0 size 1x1"),
            dumpedElement(R"({"depth":1,"label":"","role":"AXGroup"})"));
  EXPECT_EQ(dumpOfElement("AXGroup at 0,0 size -2x0"),
            dumpedElement(R"({"depth":1,"frame":{"height":0,"width":-2,"x":0,"y":0},)"
                          R"("label":"","role":"AXGroup"})"));
}

TEST(ax_dump, repairs_ill_formed_texts) {
  EXPECT_EQ(dumpOfElement(R"(AXGroup "a\xFF" value "\u{D800}")"),
            dumpedElement("{\"depth\":1,\"label\":\"a\uFFFD\",\"role\":\"AXGroup\","
                          "\"value\":\"\uFFFD\uFFFD\uFFFD\"}"));
}

TEST(ax_dump, shows_fields_with_their_inner_texts) {
  EXPECT_EQ(
      dumpOfElement("AXTextArea \"To\" value \"Ada\"\n            AXStaticText value \"Ada\""),
      dumpedElement(R"({"depth":1,"label":"To","role":"AXTextArea","textValue":"Ada",)"
                    R"("textValueComplete":true,"value":"Ada"},)"
                    R"({"depth":2,"label":"","role":"AXStaticText","value":"Ada"})"));
}

TEST(ax_dump, sees_only_the_windows_in_scope) {
  const char* world = R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 9x9
        window 8 at 0,0 size 9x9
            AXGroup "G"
)";
  EXPECT_EQ(dumpOf(world, {{"CU_WINDOW", "inbox"}}),
            dumped(R"({"depth":0,"frame":{"height":9,"width":9,"x":0,"y":0},"label":"Inbox",)"
                   R"("role":"AXWindow","subrole":"AXStandardWindow"})"));
  EXPECT_EQ(dumpOf(world, {{"CU_WINDOW", "x"}}), dumped(""));
}

TEST(ax_dump, ends_after_4000_entries) {
  std::string entries = untitledWindow;
  for (int i = 1; i < 4000; ++i) entries += R"(,{"depth":1,"label":"A","role":"AXGroup"})";
  EXPECT_EQ(dumpOfElement("AXGroup \"A\" repeat 4500"), dumped(entries));
}

TEST(ax_dump, ends_80_levels_below_the_windows) {
  std::string world = "app Notes pid 41\n  window 7 at 0,0 size 9x9\n";
  std::string entries = untitledWindow;
  for (int depth = 1; depth <= 82; ++depth) {
    world += std::string(static_cast<std::size_t>(2 + 2 * depth), ' ') + "AXGroup\n";
    if (depth > 80) continue;
    entries += R"(,{"depth":)" + std::to_string(depth) + R"(,"label":"","role":"AXGroup"})";
  }
  EXPECT_EQ(dumpOf(world), dumped(entries));
}

}  // namespace ax_dump_test
