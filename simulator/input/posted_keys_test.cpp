#include "simulator/input/posted_keys.h"

#include <gtest/gtest.h>

#include "simulator/input/happenings.h"
#include "simulator/input/posted_pointer.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"
#include "simulator/world/element_text.h"
#include "simulator/world/fields.h"
#include "simulator/world/keyboard_layouts.h"
#include "simulator/world/windows.h"

/// Key events that are posted: who takes them, and what becomes of them.
namespace simulator {

namespace {

using quartz::EventType;

constexpr const char* postedKeysDesk = R"(
    app Browser pid 40 frontmost
        window 5 "Start" at 0,0 size 50x50
            AXTextField "Address" at 0,0 size 50x20 focused
    app Notes pid 41
        menu File > Save cmd s press: set Log "saved"
        menu File > "Save As…" cmd shift s press: set Log "saved as"
        menu File > Revert cmd r disabled
        menu File > Bigger cmd + press: set Log "bigger"
        menu Edit > Undo control option z press: set Log "undone"
        menu Edit > Send cmd return press: set Log "sent"
        window 7 "Inbox" at 100,100 size 200x200 focused
            AXTextArea "Body" at 100,100 size 100x50 value "hello"
            AXTextField "To" at 100,150 size 100x20 submit: set Log "submitted"
            AXTextField "Old" at 100,170 size 100x20 disabled
            AXStaticText "Log"
        window 8 "Other" at 100,100 size 200x200
            AXTextArea "Chat" at 100,100 size 100x50 submit: set Log "chatted"
)";

class posted_keys : public testing::Test {
 protected:
  posted_keys() { mac_.world = parseWorld(postedKeysDesk); }

  Application& notes() { return *findApplication(mac_.world, 41); }
  std::string valueOf(const char* label) {
    return std::string(textOf(*findLabelled(notes(), label)));
  }
  void focus(const char* label) { focusField(notes(), *findLabelled(notes(), label)); }
  void holdFocus() { notes().focusByRecord = 7; }

  platform::EventImage event(EventType type, std::int64_t code, std::uint64_t flags = 0) {
    platform::EventImage image;
    image.identity = ++identity_;
    image.type = static_cast<std::uint32_t>(type);
    image.keyCode = code;
    image.flags = flags;
    return image;
  }

  /// What the journal says of one event.
  std::string post(const platform::EventImage& image, Route route = Route::publicRoute) {
    mac_.now += 12'000;
    deliver(mac_, 41, image, route);
    return effectLine(mac_.journal.back(), mac_.now).substr(10);
  }

  /// The same of a key's going down, after which it goes up.
  std::string press(std::int64_t code, std::uint64_t flags = 0) {
    const std::string said = post(event(EventType::keyDown, code, flags));
    post(event(EventType::keyUp, code, flags));
    return said.substr(said.find("public") + 6);
  }

  std::string type(const std::string& lowBytes) {
    platform::EventImage image = event(EventType::keyDown, 0);
    for (const char c : lowBytes) image.text += {c, '\0'};
    const std::string said = post(image);
    image.type = static_cast<std::uint32_t>(EventType::keyUp);
    image.identity = ++identity_;
    post(image);
    return said;
  }

  Mac mac_;
  std::int64_t identity_ = 0;
};

TEST_F(posted_keys, reach_what_has_the_keyboard) {
  holdFocus();
  focus("Body");

  EXPECT_EQ(type(" you"),
            "post 41/7 key-down 0 \" you\" public: typed \" you\" into AXTextArea \"Body\"");

  EXPECT_EQ(valueOf("Body"), "hello you");
  EXPECT_TRUE(notes().keysDown.empty());
}

TEST_F(posted_keys, are_lost_without_focus) {
  const std::string lost = " LOST: the application is neither in front nor has focus";
  focus("Body");

  EXPECT_EQ(post(event(EventType::keyDown, 0)), "post 41/7 key-down 0 public" + lost);
  EXPECT_EQ(post(event(EventType::keyUp, 0)), "post 41/7 key-up 0 public" + lost);
  mac_.world.frontmost = 41;
  EXPECT_EQ(press(0), ": typed \"a\" into AXTextArea \"Body\"");
}

TEST_F(posted_keys, are_lost_while_no_window_is_key) {
  holdFocus();
  EXPECT_EQ(press(0), " LOST: no window was made key");
  notes().madeKey = 8;
  EXPECT_EQ(press(0), " LOST: no window was made key");
  notes().madeKey = 7;
  EXPECT_EQ(press(0), ": nothing has the keyboard");
  notes().focusedWindow = 0;
  EXPECT_EQ(press(0), " LOST: no window of the application has its focus");
}

TEST_F(posted_keys, go_by_the_public_route_and_not_too_fast) {
  holdFocus();
  focus("Body");
  EXPECT_EQ(post(event(EventType::keyDown, 0), Route::privateRoute),
            "post 41/7 key-down 0 private LOST: wrong route");
  post(event(EventType::keyDown, 0));
  mac_.now -= 1;
  EXPECT_EQ(post(event(EventType::keyUp, 0)),
            "post 41/7 key-up 0 public LOST: came less than 12 ms after the one before");
  EXPECT_EQ(notes().keysDown, std::vector<HeldKey>{{0}});
}

TEST_F(posted_keys, that_go_up_must_have_gone_down) {
  holdFocus();
  focus("Body");
  EXPECT_EQ(post(event(EventType::keyUp, 55, commandFlag)),
            "post 41/7 key-up 55 with cmd public LOST: a release without its press");
  post(event(EventType::keyDown, 55, commandFlag));
  post(event(EventType::keyDown, 56, commandFlag));
  EXPECT_EQ(notes().keysDown, (std::vector<HeldKey>{{55}, {56}}));
  EXPECT_EQ(post(event(EventType::keyUp, 55)), "post 41/7 key-up 55 public");
  EXPECT_EQ(notes().keysDown, std::vector<HeldKey>{{56}});
}

TEST_F(posted_keys, type_by_the_users_layout_and_texts_do_not) {
  holdFocus();
  focus("Body");
  for (const KeyboardLayout layout :
       {KeyboardLayout::german, KeyboardLayout::french, KeyboardLayout::japanese}) {
    mac_.world.keyboard.layout = layout;
    press(6);
    press(19, shiftFlag);
    type("z@");
  }
  EXPECT_EQ(valueOf("Body"), "helloy\"z@w2z@z\"z@");
}

TEST_F(posted_keys, carry_the_users_modifiers_unless_told_otherwise) {
  holdFocus();
  focus("Body");
  mac_.world.keyboard.modifiers = commandFlag;
  auto unset = event(EventType::keyDown, 1);
  unset.flags.reset();

  EXPECT_EQ(post(unset), "post 41/7 key-down 1 public: pressed AXMenuItem \"Save\"");
  EXPECT_EQ(press(1), ": typed \"s\" into AXTextArea \"Body\"");
}

TEST_F(posted_keys, press_the_menu_item_that_has_the_shortcut) {
  holdFocus();
  focus("Body");
  press(1, commandFlag);
  EXPECT_EQ(valueOf("Log"), "saved");
  press(1, commandFlag | shiftFlag);
  EXPECT_EQ(valueOf("Log"), "saved as");
  press(24, commandFlag | shiftFlag);
  EXPECT_EQ(valueOf("Log"), "bigger");
  press(6, controlFlag | optionFlag);
  EXPECT_EQ(valueOf("Log"), "undone");
  press(36, commandFlag);
  EXPECT_EQ(valueOf("Log"), "sent");
  EXPECT_EQ(press(15, commandFlag), ": no menu has the shortcut");
  EXPECT_EQ(press(1, controlFlag), ": no menu has the shortcut");
  mac_.world.keyboard.layout = KeyboardLayout::french;
  EXPECT_EQ(press(0, commandFlag), ": no menu has the shortcut");
  EXPECT_EQ(valueOf("Body"), "hello");
}

TEST_F(posted_keys, do_nothing_in_an_application_that_hangs) {
  holdFocus();
  focus("Body");
  notes().hangs = true;
  EXPECT_EQ(press(0), " LOST: the application hangs");
  EXPECT_EQ(press(1, commandFlag), " LOST: the application hangs");
  EXPECT_EQ(valueOf("Body"), "hello");
  EXPECT_EQ(valueOf("Log"), "");
}

TEST_F(posted_keys, break_lines_softly_with_shift_and_submit_without) {
  holdFocus();
  focus("Body");
  EXPECT_EQ(press(36, shiftFlag), ": broke the line softly in AXTextArea \"Body\"");
  EXPECT_EQ(press(36), ": broke the line in AXTextArea \"Body\"");
  EXPECT_EQ(valueOf("Body"), "hello\n\n");

  focus("To");
  EXPECT_EQ(press(36, shiftFlag), ": submitted AXTextField \"To\"");
  EXPECT_EQ(valueOf("Log"), "submitted");
  EXPECT_EQ(valueOf("To"), "");
}

TEST_F(posted_keys, in_a_composer_break_lines_softly_and_send) {
  notes().focusByRecord = notes().madeKey = 8;
  notes().focusedWindow = findWindow(mac_.world, 8)->element;
  focus("Chat");
  press(36, shiftFlag);
  EXPECT_EQ(valueOf("Log"), "");
  press(36);
  EXPECT_EQ(valueOf("Log"), "chatted");
  EXPECT_EQ(valueOf("Chat"), "\n");
}

TEST_F(posted_keys, move_the_keyboard_by_tab_between_enabled_fields) {
  holdFocus();
  focus("To");
  EXPECT_EQ(press(48), ": focused AXTextArea \"Body\"");
  EXPECT_EQ(press(48), ": typed a tab into AXTextArea \"Body\"");
  focus("To");
  EXPECT_EQ(press(48, shiftFlag), ": focused AXTextArea \"Body\"");
  EXPECT_EQ(valueOf("Body"), "hello\t");
}

TEST_F(posted_keys, edit_at_the_caret) {
  holdFocus();
  focus("Body");
  press(123);
  press(51);
  press(115);
  press(117);
  type("J");
  press(119);
  press(49);
  press(53);
  press(0, optionFlag);
  EXPECT_EQ(valueOf("Body"), "Jelo ");
}

TEST_F(posted_keys, select_copy_cut_and_paste) {
  holdFocus();
  focus("Body");
  EXPECT_EQ(press(8, commandFlag), ": nothing is selected in AXTextArea \"Body\"");
  press(0, commandFlag);
  press(7, commandFlag);
  EXPECT_EQ(valueOf("Body"), "");
  EXPECT_EQ(mac_.world.pasteboard.changeCount, 2);
  press(9, commandFlag);
  EXPECT_EQ(valueOf("Body"), "");
  settleWrites(mac_.world, 50'000);
  EXPECT_EQ(valueOf("Body"), "hello");
  press(0, commandFlag);
  press(8, commandFlag);
  EXPECT_EQ(mac_.world.pasteboard.changeCount, 3);
}

TEST_F(posted_keys, type_twenty_units_of_a_text_at_most) {
  holdFocus();
  focus("Body");
  type("12345678901234567890123");
  EXPECT_EQ(valueOf("Body"), "hello12345678901234567890");
}

TEST_F(posted_keys, follow_the_users_key_window_once_the_user_has_come) {
  holdFocus();
  focus("Body");
  type("a");
  happen(mac_, parseHappening("user click 10,10", mac_.world));
  type("b");
  raiseWindow(mac_.world, 8);
  happen(mac_, parseHappening("user click 110,110", mac_.world));
  type("c");
  EXPECT_EQ(mac_.world.frontmost, 41);
  EXPECT_EQ(valueOf("Body"), "helloab");
  EXPECT_EQ(valueOf("Chat"), "c");
}

TEST_F(posted_keys, reach_no_locked_session) {
  holdFocus();
  focus("Body");
  mac_.world.session.locked = true;
  EXPECT_EQ(press(0), " LOST: the session is locked or not on the console");
}

}  // namespace

}  // namespace simulator
