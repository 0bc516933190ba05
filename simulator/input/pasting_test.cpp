#include <gtest/gtest.h>

#include "simulator/drawing/pictures.h"
#include "simulator/text/parse.h"
#include "simulator/world/actions.h"
#include "simulator/world/element_text.h"
#include "simulator/world/fields.h"
#include "simulator/world/pasteboard.h"

/// What applications do with the pasteboard.
namespace simulator {

namespace {

class pasting : public testing::Test {
 protected:
  Application& notes() { return world_.applications[0]; }
  void focus(const char* label) { focusField(notes(), *findLabelled(notes(), label)); }
  std::string valueOf(const char* label) {
    return std::string(textOf(*findLabelled(notes(), label)));
  }
  void pressPaste() {
    const ElementId item = findLabelled(notes(), "Paste")->id;
    ASSERT_EQ(perform(world_, 41, item, "AXPress").error, ax::Error::success);
  }

  World world_ = parseWorld(R"(
    pasteboard item "public.utf8-plain-text" "old"
    app Notes pid 41 pastes after 400ms
        menu Edit > Paste cmd v
        menu Edit > "Paste and Go" cmd shift v press: paste; set Log "gone"
        window 7 "Inbox" at 0,0 size 300x300
            AXTextField "Code" at 0,0 size 9x9 value "ab" transform upper
            AXTextArea "Letter" at 0,0 size 9x9 takes files
            AXGroup "Drop" at 0,0 size 9x9 takes files
            AXButton "Go" at 0,0 size 9x9
            AXStaticText "Log"
  )");
};

TEST_F(pasting, takes_what_is_there_when_the_application_reads_it) {
  focus("Code");
  settleWrites(world_, 100'000);
  EXPECT_EQ(requestPaste(world_, notes()), "asked for a paste into AXTextField \"Code\"");
  settleWrites(world_, 499'999);
  copyText(world_.pasteboard, "new");
  EXPECT_EQ(valueOf("Code"), "ab");
  settleWrites(world_, 500'000);
  EXPECT_EQ(valueOf("Code"), "ABNEW");
}

TEST_F(pasting, comes_of_a_menus_item_too) {
  focus("Code");
  pressPaste();
  settleWrites(world_, 400'000);
  EXPECT_EQ(valueOf("Code"), "ABOLD");

  perform(world_, 41, findLabelled(notes(), "Paste and Go")->id, "AXPress");
  settleWrites(world_, 800'000);
  EXPECT_EQ(valueOf("Code"), "ABOLDOLD");
  EXPECT_EQ(valueOf("Log"), "gone");
}

TEST_F(pasting, at_once_by_an_application_that_does_not_wait) {
  notes().pasteDelay = 0;
  focus("Code");
  requestPaste(world_, notes());
  EXPECT_EQ(valueOf("Code"), "ABOLD");
}

TEST_F(pasting, attaches_files_or_gives_their_paths) {
  notes().pasteDelay = 0;
  world_.pasteboard.items = {{{"public.file-url", "file:///a/x%20y.txt"}},
                             {{"public.file-url", "file:///b.pdf"}}};
  focus("Code");
  requestPaste(world_, notes());
  EXPECT_EQ(valueOf("Code"), "AB/A/X Y.TXT\n/B.PDF");

  for (const char* label : {"Letter", "Drop"}) {
    notes().focusedElement = findLabelled(notes(), label)->id;
    requestPaste(world_, notes());
    std::vector<std::string> titles;
    for (const ElementId child : findLabelled(notes(), label)->children) {
      titles.push_back(findElement(notes(), child)->role + " " +
                       labelOf(*findElement(notes(), child)));
    }
    EXPECT_EQ(titles, (std::vector<std::string>{"AXImage x y.txt", "AXImage b.pdf"}));
  }
  EXPECT_EQ(valueOf("Letter"), "");
}

TEST_F(pasting, shows_attached_files_beside_each_other_at_the_foot) {
  World world = parseWorld(R"(
    app Notes pid 41 pastes after 0ms
        window 7 "Inbox" at 0,0 size 400x300
            AXTextArea "Letter" at 10,20 size 300x100 takes files focused
            AXTextField "Small" at 10,150 size 300x24 takes files)");
  Application& application = world.applications[0];
  world.pasteboard.items = {{{"public.file-url", "file:///a.txt"}},
                            {{"public.file-url", "file:///b.pdf"}}};
  requestPaste(world, application);
  application.focusedElement = findLabelled(application, "Small")->id;
  requestPaste(world, application);

  std::vector<Rect> frames;
  for (const Element& each : application.elements) {
    if (each.role == "AXImage") frames.push_back(*each.frame);
  }
  EXPECT_EQ(frames, (std::vector<Rect>{
                        {14, 70, 48, 48}, {66, 70, 48, 48}, {14, 152, 20, 20}, {38, 152, 20, 20}}));
  EXPECT_EQ(pictureOf(world, world.windows[0]).elements.size(), 6U);
}

TEST_F(pasting, does_nothing_where_nothing_takes_it) {
  notes().pasteDelay = 0;
  EXPECT_EQ(requestPaste(world_, notes()), "nothing takes the paste");
  notes().focusedElement = findLabelled(notes(), "Go")->id;
  EXPECT_EQ(requestPaste(world_, notes()), "nothing takes the paste");
  focus("Code");
  world_.pasteboard.items = {{{"public.utf8-plain-text", std::nullopt}}};
  requestPaste(world_, notes());
  notes().hangs = true;
  copyText(world_.pasteboard, "x");
  requestPaste(world_, notes());
  EXPECT_EQ(valueOf("Code"), "ab");
}

}  // namespace

}  // namespace simulator
