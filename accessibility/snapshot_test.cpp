#include "accessibility/snapshot.h"

#include <gtest/gtest.h>

#include "platform/simulated/values.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

using Calls = std::vector<std::string>;

/// The label of an element, which is written as in a world's text.
std::string labelOfElement(const std::string& element) {
  TestMac mac("app Notes pid 41\n    window 7 \"W\" at 0,0 size 99x99\n        " + element + "\n");
  return valueInside(mac, [] { return axLabel(simulated::makeElement({41, 2})); });
}

constexpr const char* send = R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
)";

TEST(snapshot, reads_children_that_were_taken_away_again) {
  TestMac mac(send);
  runInside(mac, [&] {
    Snapshot window(elementOf(mac, "Notes", "Inbox"));
    EXPECT_EQ(window.takeChildren().size(), 1U);
    EXPECT_EQ(window.children().size(), 1U);
  });
}

TEST(axLabel, is_the_first_text_that_is_not_empty) {
  EXPECT_EQ(labelOfElement(R"(AXButton "T" description "D" placeholder "P" help "H")"), "T");
  EXPECT_EQ(labelOfElement(R"(AXButton "" description "Close" placeholder "P")"), "Close");
  EXPECT_EQ(labelOfElement(R"(AXButton description "" placeholder "P" help "H")"), "P");
  EXPECT_EQ(labelOfElement(R"(AXButton help "H")"), "H");
  EXPECT_EQ(labelOfElement(R"(AXButton)"), "");
  EXPECT_EQ(labelOfElement(R"(AXButton "" description "" placeholder "" help "")"), "");
}

TEST(axLabel, passes_over_what_is_no_text_or_cannot_be_read) {
  EXPECT_EQ(labelOfElement(R"(AXButton attribute AXTitle 5 description "D")"), "D");
  EXPECT_EQ(labelOfElement(R"(AXButton "T" failing AXTitle -25200 help "H")"), "H");
}

TEST(axLabel, is_neither_trimmed_nor_folded) {
  EXPECT_EQ(labelOfElement(R"(AXButton "  Send\n Now ")"), "  Send\n Now ");
  EXPECT_EQ(labelOfElement(R"(AXButton " " description "D")"), " ");
}

TEST(axLabel, takes_one_round_trip) {
  TestMac mac(send);
  EXPECT_EQ(runInside(mac, [&] { axLabel(elementOf(mac, "Notes", "Send")); }).calls,
            Calls{"ax.attributes"});
}

TEST(axLabel, is_empty_when_nothing_can_be_read) {
  TestMac mac(send, {"ax.attributes 1 hang"});
  runInside(mac, [&] { EXPECT_EQ(axLabel(elementOf(mac, "Notes", "Send")), ""); });
}

std::optional<Rect> frameNow(const platform::ElementReference& reference) {
  Snapshot now(simulated::makeElement(reference));
  return axFrame(now);
}

/// The frame of an element, which is written as in a world's text.
std::optional<Rect> frameOf(const std::string& element, std::vector<std::string> faults = {}) {
  TestMac mac(
      "app Notes pid 41\n    window 7 \"W\" at 0,0 size 99x99\n        AXGroup " + element + "\n",
      std::move(faults));
  return valueInside(mac, [] { return frameNow({41, 2}); });
}

TEST(axFrame, is_made_of_position_and_size) {
  EXPECT_EQ(frameOf("at 120.5,-90 size 60x20"), (Rect{120.5, -90, 60, 20}));
}

TEST(axFrame, may_be_empty) {
  EXPECT_EQ(frameOf("at 120,90 size 0x0"), (Rect{120, 90, 0, 0}));
  EXPECT_EQ(frameOf("at 120,90 size -5x20"), (Rect{120, 90, -5, 20}));
}

TEST(axFrame, is_absent_when_either_part_cannot_be_read) {
  EXPECT_EQ(frameOf(""), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 failing AXPosition -25212"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 failing AXSize -25212"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4", {"ax.attributes 1 error -25202"}), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4", {"ax.attributes 1 hang"}), std::nullopt);
}

TEST(axFrame, is_absent_when_either_part_is_no_geometry) {
  EXPECT_EQ(frameOf(R"(at 1,2 size 3x4 attribute AXPosition "1,2")"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXPosition size 1x2"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXSize point 3,4"), std::nullopt);
  EXPECT_EQ(frameOf("at 1,2 size 3x4 attribute AXSize opaque 7"), std::nullopt);
}

TEST(axFrame, is_absent_when_it_is_not_finite) {
  for (const char* position : {"nan,2", "1,nan", "inf,2", "1,-inf"}) {
    EXPECT_EQ(frameOf(std::string("at 1,2 size 3x4 attribute AXPosition point ") + position),
              std::nullopt)
        << position;
  }
  for (const char* size : {"nanx4", "3xnan", "infx4", "3x-inf"}) {
    EXPECT_EQ(frameOf(std::string("at 1,2 size 3x4 attribute AXSize size ") + size), std::nullopt)
        << size;
  }
}

TEST(axFrame, keeps_finite_values_however_large) {
  EXPECT_EQ(frameOf("at 1e308,-1e308 size 1e308x1"), (Rect{1e308, -1e308, 1e308, 1}));
}

TEST(axFrame, takes_one_round_trip) {
  TestMac mac("app Notes pid 41\n    window 7 \"W\" at 0,0 size 99x99\n");
  EXPECT_EQ(runInside(mac, [] { frameNow({41, 1}); }).calls, Calls{"ax.attributes"});
}

// Element 1 is the window, element 2 the group.
constexpr const char* snapshotDesk = R"(
    app Notes pid 41
        window 7 "W" at 0,0 size 500x500
            AXGroup
                AXStaticText value "a"
                    AXStaticText value "b"
                AXGroup
                    AXStaticText value ""
                    AXButton "not a text" value "nor this"
                        AXStaticText value "c"
                AXTextField value "typed"
                AXStaticText value "d"
)";

Result read(TestMac& mac, int budget, std::size_t maxLength, std::string& text) {
  return runInside(mac, [&] { text = axText(simulated::makeElement({41, 2}), budget, maxLength); });
}

std::string textOf(const std::string& world, int budget = 40, std::size_t maxLength = 120,
                   std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  std::string text;
  read(mac, budget, maxLength, text);
  return text;
}

/// A group of static texts.
std::string groupOf(const std::vector<std::string>& texts) {
  std::string world = "app Notes pid 41\n    window 7 \"W\" at 0,0 size 9x9\n        AXGroup\n";
  for (const std::string& text : texts) {
    world += "            AXStaticText value \"" + text + "\"\n";
  }
  return world;
}

TEST(axText, joins_the_static_texts_in_reading_order) {
  EXPECT_EQ(textOf(snapshotDesk), "a b c d");
}

TEST(axText, skips_empty_texts) { EXPECT_EQ(textOf(groupOf({"a", "", "b"})), "a b"); }

TEST(axText, keeps_the_white_space_of_texts) {
  EXPECT_EQ(textOf(groupOf({" a ", "b\\nc"})), " a  b\nc");
}

TEST(axText, of_a_static_text_is_its_own_and_those_below) {
  TestMac mac(snapshotDesk);
  EXPECT_EQ(valueInside(mac, [] { return axText(simulated::makeElement({41, 3})); }), "a b");
}

TEST(axText, with_no_budget_reads_nothing) {
  TestMac mac(snapshotDesk);
  for (const int budget : {0, -1, -1000}) {
    std::string text = "?";
    const Result run = read(mac, budget, 120, text);
    EXPECT_EQ(text, "");
    EXPECT_EQ(run.calls, Calls{}) << budget;
  }
}

TEST(axText, visits_no_more_elements_than_its_budget) {
  EXPECT_EQ(textOf(snapshotDesk, 1), "");
  EXPECT_EQ(textOf(snapshotDesk, 2), "a");
  EXPECT_EQ(textOf(snapshotDesk, 3), "a b");
  EXPECT_EQ(textOf(snapshotDesk, 6), "a b");
  EXPECT_EQ(textOf(snapshotDesk, 7), "a b c");
  EXPECT_EQ(textOf(snapshotDesk, 8), "a b c");
  EXPECT_EQ(textOf(snapshotDesk, 9), "a b c d");
}

TEST(axText, reads_each_element_once_and_the_values_of_static_texts) {
  TestMac mac(snapshotDesk);
  std::string text;
  EXPECT_EQ(read(mac, 1, 120, text).calls, Calls{"ax.attributes"});
  EXPECT_EQ(read(mac, 3, 120, text).calls, (Calls{"ax.attributes", "ax.attributes", "ax.attribute",
                                                  "ax.attributes", "ax.attribute"}));
  EXPECT_EQ(read(mac, 40, 120, text).calls.size(), 9U + 5U);
}

TEST(axText, visits_forty_elements_by_default) {
  std::string expected = "x";
  for (int i = 1; i < 39; ++i) expected += " x";  // the group is one of the forty
  EXPECT_EQ(textOf(groupOf(std::vector<std::string>(60, "x"))), expected);
}

TEST(axText, is_a_hundred_and_twenty_characters_by_default) {
  EXPECT_EQ(textOf(groupOf({std::string(200, 'x')})), std::string(120, 'x'));
}

TEST(axText, is_cut_to_characters_as_the_user_sees_them) {
  EXPECT_EQ(textOf(groupOf({"\u00E9\u00E9", "\u4F60\u597D"}), 40, 4), "\u00E9\u00E9 \u4F60");
  EXPECT_EQ(textOf(groupOf({"e\u0301\U0001F44D\U0001F3FDz"}), 40, 2),
            "e\u0301\U0001F44D\U0001F3FD");
  EXPECT_EQ(textOf(groupOf({"abc"}), 40, 0), "");
}

TEST(axText, takes_only_the_exact_role) {
  EXPECT_EQ(textOf("app Notes pid 41\n    window 7 \"W\" at 0,0 size 9x9\n        AXGroup\n"
                   "            AXStaticText value \"a\" attribute AXRole \"AXstatictext\"\n"
                   "            AXGroup value \"b\" attribute AXRole \"AXStaticText\"\n"
                   "            AXStaticText value \"c\" attribute AXRole 5\n"),
            "b");
}

TEST(axText, skips_values_that_are_no_text_or_cannot_be_read) {
  EXPECT_EQ(textOf("app Notes pid 41\n    window 7 \"W\" at 0,0 size 9x9\n        AXGroup\n"
                   "            AXStaticText value 5\n"
                   "            AXStaticText\n"
                   "            AXStaticText value \"a\" failing AXValue -25200\n"
                   "            AXStaticText value \"b\"\n"),
            "b");
}

TEST(axText, passes_over_children_that_are_no_elements) {
  EXPECT_EQ(textOf("app Notes pid 41\n    window 7 \"W\" at 0,0 size 9x9\n"
                   "        AXGroup attribute AXChildren \"none\"\n"
                   "            AXStaticText value \"a\"\n"),
            "");
}

TEST(axText, goes_on_when_one_element_cannot_be_read) {
  EXPECT_EQ(textOf(groupOf({"a", "b", "c"}), 40, 120, {"ax.attributes 3 error -25202"}), "a c");
}

TEST(axText, ends_within_its_budget_on_a_cycle) {
  TestMac mac(R"(
    app Notes pid 41
        window 7 "W" at 0,0 size 9x9
            AXGroup "Loop" attribute AXChildren elements "Text" "Loop"
                AXStaticText "Text" value "x"
)");
  std::string text;
  const Result run = read(mac, 9, 120, text);
  EXPECT_EQ(text, "x x x x");
  EXPECT_EQ(run.calls.size(), 9U + 4U);
}

TEST(axText, ends_at_an_application_that_hangs) {
  TestMac mac(snapshotDesk, {"ax.attributes 2+ hang", "ax.attribute 1+ hang"});
  std::string text;
  const Result run = read(mac, 40, 120, text);
  EXPECT_EQ(text, "");
  EXPECT_EQ(run.elapsed, 12'000'000);
}

}  // namespace
}  // namespace driver
