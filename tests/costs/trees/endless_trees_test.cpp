#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// Every command that walks, in trees that have no end: an ordinary reply, within its limits.
namespace {

using namespace testing_support;

/// A command, its reply where nothing is found, and how many elements it visits at most.
struct Walking {
  std::vector<std::string> words;
  std::string reply;
  std::int64_t elements = 0;
};

std::string refused(const std::string& error) {
  return success("{\"error\":\"" + error + "\",\"ok\":false}");
}

std::vector<Walking> walks() {
  return {
      {{"ax-list", "Notes"}, success(R"({"elements":[],"ok":true})"), 20'000},
      {{"ax-find-text", "Notes", "x"},
       success(R"({"counts":{"x":0},"frames":{},"ok":true})"),
       30'000},
      {{"ax-texts-at", "Notes", "6", "6"}, success(R"({"ok":true,"texts":[]})"), 30'000},
      {{"ax-match", "Notes", "x", "-1", "-1"}, refused("no element"), 20'000},
      {{"ax-press-match", "Notes", "x", "-1", "-1"}, refused("no element"), 20'000},
      {{"ax-press-exact", "Notes", "x"}, refused("no element labelled \\\"x\\\""), 30'000},
      {{"ax-press-exact", "Notes", "x", "only", "y"},
       failure("the requested navigation container is not unique"),
       30'000},
      {{"ax-press-child", "Notes", "x", "last"}, refused("no row matching \\\"x\\\""), 20'000},
      {{"ax-press-in-document", "Notes", "x", "y"},
       failure("the expected conversation document is not uniquely open"),
       30'000},
      {{"ax-insert", "Notes", "x", "-1", "-1", "end", "y"},
       refused("no text input matches \\\"x\\\" there"),
       20'000},
      {{"ax-focus", "Notes", "x", "-1", "-1"}, refused("no element"), 20'000},
      {{"ax-focused", "Notes"}, success(R"({"element":null,"ok":true})"), 20'000},
      {{"ax-modal", "Notes"}, success(R"({"modals":[],"ok":true})"), 20'000},
      {{"ax-modal-press", "Notes", "x", "y"},
       refused("0 dialogs read exactly the approved text"),
       20'000},
      {{"ax-popup-items", "Notes"}, success(R"({"items":[],"ok":true})"), 20'000},
      {{"ax-slider", "Notes", "x"}, refused("0 sliders labelled \\\"x\\\""), 20'000},
  };
}

constexpr std::int64_t aroundTheWalk = 5;  // messages: to enable, for the windows, focus and point

std::string windowOf(const std::string& elements) {
  return "    app Notes pid 41\n        window 7 at 0,0 size 9x9\n" + elements;
}

/// What each command says of the tree: nothing that it looks for is in it.
void expectNothingIn(const std::string& elements) {
  for (const Walking& walk : walks()) {
    SCOPED_TRACE(walk.words[0]);
    TestMac mac(windowOf(elements));
    const Result run = mac.driverWith(walk.words);
    EXPECT_EQ(seen(run), walk.reply);
    EXPECT_LE(messages(run), walk.elements + aroundTheWalk);
  }
}

TEST(endless_trees, that_grow_or_shrink_under_the_walk_are_walked) {
  expectNothingIn("            AXGroup grows\n                AXGroup grows\n");
  expectNothingIn("            AXGroup grows deeper\n                AXGroup grows deeper\n");
  expectNothingIn("            AXGroup shrinks\n                AXGroup repeat 9\n");
}

TEST(endless_trees, in_circles_are_walked_to_their_limits) {
  // Its own only child; then its parent's parent; then twice its own child, which doubles the tree
  // with each level.
  expectNothingIn("            AXGroup \"A\" attribute AXChildren elements \"A\"\n");
  expectNothingIn(
      "            AXGroup \"A\"\n                AXGroup\n"
      "                    AXGroup attribute AXChildren elements \"A\"\n");
  expectNothingIn("            AXGroup \"A\" attribute AXChildren elements \"A\" \"A\"\n");
}

std::size_t countOf(const std::string& part, const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++count;
  return count;
}

TEST(endless_trees, are_dumped_to_4000_entries) {
  TestMac mac(windowOf("            AXGroup \"A\" attribute AXChildren elements \"A\" \"A\"\n"));
  EXPECT_EQ(countOf("\"depth\":", mac.driver("ax-dump Notes").output), 4000U);
}

TEST(endless_trees, of_dialogs_have_8_of_them_and_20000_elements_are_searched_in_each) {
  TestMac mac(
      windowOf("            AXGroup \"A\" subrole AXDialog at 1,1 size 9x9 attribute AXChildren "
               "elements \"A\" \"A\" \"B\"\n                AXButton \"B\"\n"));
  const Result run = mac.driver("ax-modal Notes");
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(countOf("\"subrole\":", run.output), 8U);
  // Each dialog's search for buttons ends by itself; what several of them visit is read once.
  EXPECT_EQ(messages(run), 90'503);
}

TEST(endless_trees, of_menu_items_have_20000_of_them) {
  TestMac mac(windowOf("            AXMenuItem \"A\" attribute AXChildren elements \"A\" \"A\"\n"));
  const Result run = mac.driver("ax-popup-items Notes");
  EXPECT_EQ(run.status, 0);
  // All that is visited but the window.
  EXPECT_EQ(countOf("\"texts\":", run.output), 19'999U);
  // Each is visited and its value is read; the texts in all of them are looked for in 20,000, some
  // of which are visited.
  EXPECT_EQ(messages(run), 3 + 20'000 + 19'999 + 19'986);
}

TEST(endless_trees, in_a_field_leave_its_text_incomplete) {
  for (const char* children : {"\"A\"", "\"A\" \"A\""}) {
    TestMac mac(
        windowOf("            AXTextArea \"To\" at 1,1 size 9x9\n                AXGroup "
                 "\"A\" attribute AXChildren elements " +
                 std::string(children) + "\n"));
    const Result run = mac.driver("ax-match Notes To -1 -1");
    EXPECT_EQ(seen(run), success(R"({"element":{"frame":{"height":9,"width":9,"x":1,"y":1},)"
                                 R"("label":"To","role":"AXTextArea","textValue":"",)"
                                 R"("textValueComplete":false,"value":""},"matchedBy":"label",)"
                                 R"("ok":true})"));
    EXPECT_LE(messages(run), 4096 + aroundTheWalk);
  }
}

TEST(endless_trees, of_menus_are_walked_along_the_path) {
  TestMac mac(
      "    app Notes pid 41\n        AXMenuBar\n            AXMenuBarItem \"A\" attribute "
      "AXChildren elements \"A\" \"A\"\n");
  EXPECT_EQ(seen(mac.driver("ax-menu Notes A A A A B")),
            refused("no menu item \\\"B\\\" under A > A > A > A; available: A | A | A | A"));
}

}  // namespace
