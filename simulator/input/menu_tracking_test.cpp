#include "simulator/input/menu_tracking.h"

#include <gtest/gtest.h>

#include "simulator/desktop.h"
#include "simulator/text/parse.h"
#include "simulator/world/elements.h"
#include "tests/support/simulated_run.h"

namespace simulator {
namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x200
            AXCheckBox "Mine" at 10,60 size 60x20
    app Chat pid 41 chromium tracks menus
        window 7 "Inbox" at 100,80 size 400x300
            AXPopUpButton "Size" at 120,100 size 100x24 choices "Small" "Large"
            AXCheckBox "Sign" at 300,100 size 100x20
            AXTextArea "Body" at 120,200 size 200x100 focused)";

class menu_tracking : public testing::Test {
 protected:
  Application& chat() { return mac_.desktop().mac().world.applications[1]; }
  const Element& labelled(const char* label) { return *findLabelled(chat(), label); }
  bool isOpen() { return chat().openMenu != 0; }
  void happen(const std::string& text) {
    mac_.desktop().happen(parseHappening(text, mac_.world()));
  }
  void open() {
    mac_.driver("ax-press Chat 150 110");
    ASSERT_TRUE(isOpen());
  }
  std::string lastOutcome() { return mac_.desktop().mac().journal.back().outcome; }

  TestMac mac_{desk};
};

TEST_F(menu_tracking, is_seen_by_accessibility) {
  open();
  EXPECT_EQ(seen(mac_.driver("ax-popup-items Chat")),
            success(R"({"items":[{"frame":{"height":22,"width":100,"x":120,"y":124},)"
                    R"("label":"Small","role":"AXMenuItem","texts":[]},)"
                    R"({"frame":{"height":22,"width":100,"x":120,"y":146},)"
                    R"("label":"Large","role":"AXMenuItem","texts":[]}],"ok":true})"));
}

TEST_F(menu_tracking, ends_with_the_users_click_wherever_that_is) {
  for (const char* click : {"user click 310,110", "user click 20,70", "user click 900,700"}) {
    open();
    happen(click);
    EXPECT_FALSE(isOpen()) << click;
    EXPECT_EQ(lastOutcome(), "Chat: closed a menu");
  }
  EXPECT_EQ(labelled("Sign").attributes.at("AXValue"), AttributeValue(std::int64_t{0}));
  EXPECT_EQ(
      findLabelled(mac_.desktop().mac().world.applications[0], "Mine")->attributes.at("AXValue"),
      AttributeValue(std::int64_t{0}));
  EXPECT_EQ(mac_.world().frontmost, 40);
}

TEST_F(menu_tracking, goes_on_for_the_users_click_on_an_item) {
  open();
  happen("user click 150,160");
  EXPECT_FALSE(isOpen());
  EXPECT_EQ(labelled("Size").attributes.at("AXValue"), AttributeValue(std::string("Large")));
}

TEST_F(menu_tracking, takes_the_users_keys_in_front_and_ends_with_escape) {
  happen("front Chat");
  open();
  happen("user key a");
  EXPECT_EQ(lastOutcome(), "Chat: the open menu takes the key");
  EXPECT_EQ(mac_.valueOf("Chat", "Body"), "");
  happen("user key escape");
  EXPECT_FALSE(isOpen());
  happen("user key a");
  EXPECT_EQ(mac_.valueOf("Chat", "Body"), "a");
}

TEST_F(menu_tracking, keeps_posted_input_waiting_until_the_menu_has_closed) {
  open();
  mac_.driver("bg-click Chat 310 110", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(labelled("Sign").attributes.at("AXValue"), AttributeValue(std::int64_t{0}));
  EXPECT_FALSE(chat().waiting.empty());
  happen("user click 20,70");
  EXPECT_TRUE(chat().waiting.empty());
  EXPECT_EQ(labelled("Sign").attributes.at("AXValue"), AttributeValue(std::int64_t{1}));
}

TEST_F(menu_tracking, lets_posted_input_to_the_menu_through) {
  open();
  mac_.driver("bg-click Chat 150 160", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(labelled("Size").attributes.at("AXValue"), AttributeValue(std::string("Large")));
}

TEST_F(menu_tracking, keeps_keys_waiting_that_are_then_lost_without_focus) {
  open();
  mac_.driver("bg-type Chat hello", {{"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(mac_.valueOf("Chat", "Body"), "");
  happen("user click 20,70");
  EXPECT_EQ(mac_.valueOf("Chat", "Body"), "");
  EXPECT_TRUE(chat().waiting.empty());
}

}  // namespace
}  // namespace simulator
