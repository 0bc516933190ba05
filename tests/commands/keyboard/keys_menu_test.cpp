#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// "bg-key" with the command key presses the menu item that has the shortcut, if there is one.
namespace keys_menu_test {

using namespace testing_support;

/// Notes with these menus; more lines may follow.
std::string deskWith(const std::string& menus, const std::string& more = "") {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        menu File > Save cmd s press: set Address "saved"
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
)" + menus +
         R"(
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400
)" + more;
}

constexpr const char* saveMenu = R"(
        menu Edit > Undo cmd z press: set Body "undone"
        menu File > Open cmd o press: set Body "opened"
        menu File > Save cmd s press: set Body "saved"
        menu File > "Save As" cmd shift s press: set Body "saved as"
)";

const std::string pressed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

const std::string withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\",\"locked\":true,"
    "\"ok\":false}\n";

std::string refused(const std::string& message) {
  return success("{\"error\":\"" + message + "\",\"ok\":false}");
}

/// What a shortcut does in Notes with these menus: the text of the body, and the keys posted.
std::string outcome(const std::string& menus, const std::string& combination) {
  TestMac mac(deskWith(menus));
  EXPECT_EQ(seen(mac.driverWith({"bg-key", "Notes", combination})), pressed);
  return mac.valueOf("Notes", "Body") + "; " + keySteps(mac);
}

TEST(menu_shortcut, presses_its_item_and_posts_no_keys) {
  TestMac mac(deskWith(saveMenu));

  const Result run = mac.driver("bg-key Notes Cmd+Shift+S");

  EXPECT_EQ(seen(run), pressed);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  340 ms  action 41/0 AXPress: pressed AXMenuItem "Save As"
  490 ms  focus 41/7 take
)");
  EXPECT_EQ(waits(mac), "40000 300000 100000 50000 40000");
  EXPECT_EQ(run.elapsed, 530'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "saved as");
}

TEST(menu_shortcut, of_the_application_in_front_takes_100_milliseconds) {
  TestMac mac(deskWith(saveMenu));

  const Result run = mac.driver("bg-key Browser cmd+s");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":40,"via":"background","window":5})"));
  EXPECT_EQ(run.effects, "    0 ms  action 40/0 AXPress: pressed AXMenuItem \"Save\"\n");
  EXPECT_EQ(run.elapsed, 100'000);
}

TEST(menu_shortcut, without_an_item_is_posted_as_keys) {
  EXPECT_EQ(outcome(saveMenu, "cmd+b"), "; down 55, down 11, up 11, up 55");
  EXPECT_EQ(outcome("", "cmd+s"), "; down 55, down 1, up 1, up 55");
}

TEST(menu_shortcut, needs_exactly_the_items_modifiers) {
  const std::pair<const char*, const char*> chords[] = {
      {"", "cmd+k"},
      {"shift", "cmd+shift+k"},
      {"option", "cmd+alt+k"},
      {"control", "cmd+ctrl+k"},
      {"option shift", "cmd+alt+shift+k"},
      {"control option shift", "cmd+ctrl+alt+shift+k"},
  };
  for (const auto& [modifiers, own] : chords) {
    const std::string menu =
        "        menu A > B cmd " + std::string(modifiers) + " k press: set Body \"pressed\"\n";
    for (const auto& [others, combination] : chords) {
      TestMac mac(deskWith(menu));
      mac.driver("bg-key Notes " + std::string(combination));
      const bool isOwn = std::string(combination) == own;
      EXPECT_EQ(keySteps(mac).empty(), isOwn) << menu << combination;
      EXPECT_EQ(mac.valueOf("Notes", "Body"), isOwn ? "pressed" : "") << menu << combination;
    }
  }
}

/// A menu bar written out, with one item.
std::string itemWith(const std::string& attributes) {
  return "        AXMenuBar\n            AXMenuBarItem \"A\"\n                AXMenu\n"
         "                    AXMenuItem \"B\" " +
         attributes + " press: set Body \"pressed\"\n";
}

std::string itemOutcome(const std::string& attributes, const std::string& combination) {
  const std::string result = outcome(itemWith(attributes), combination);
  return result.substr(0, result.find(';'));
}

TEST(menu_shortcut, of_an_item_without_modifiers_is_command_alone) {
  const std::string k = "attribute AXMenuItemCmdChar \"K\"";
  EXPECT_EQ(itemOutcome(k, "cmd+k"), "pressed");
  EXPECT_EQ(itemOutcome(k + " attribute AXMenuItemCmdModifiers 0", "cmd+k"), "pressed");
  EXPECT_EQ(outcome(itemWith(k), "cmd+shift+k").find("down 55"), 2U);
  EXPECT_EQ(outcome(itemWith(k + " failing AXMenuItemCmdModifiers -25212"), "cmd+k"), "pressed; ");
}

TEST(menu_shortcut, that_needs_no_command_key_is_not_pressed) {
  const std::string k = "attribute AXMenuItemCmdChar \"k\" attribute AXMenuItemCmdModifiers 8";
  EXPECT_EQ(outcome(itemWith(k), "cmd+k"), "; down 55, down 40, up 40, up 55");
}

TEST(menu_shortcut, is_told_in_either_case) {
  for (const char* character : {"k", "K", "\\u{212A}"}) {
    const std::string own = "attribute AXMenuItemCmdChar \"" + std::string(character) + "\"";
    EXPECT_EQ(outcome(itemWith(own), "cmd+k"), "pressed; ") << character;
    EXPECT_EQ(outcome(itemWith(own), "CMD+K"), "pressed; ") << character;
  }
}

TEST(menu_shortcut, is_of_a_key_with_a_name_of_one_character) {
  for (const char* key : {"a", "1", "=", "-", "[", "]", "'", ";", "\\", ",", "/", ".", "`"}) {
    const std::string own = std::string(key) == "\\" ? "\\\\" : key;
    EXPECT_EQ(itemOutcome("attribute AXMenuItemCmdChar \"" + own + "\"", "cmd+" + std::string(key)),
              "pressed")
        << key;
  }
  for (const char* key : {"return", "tab", "space", "delete", "escape", "left", "home"}) {
    const std::string own = "attribute AXMenuItemCmdChar \"" + std::string(key) + "\"";
    TestMac mac(deskWith(itemWith(own)));
    const Result run = mac.driver("bg-key Notes cmd+" + std::string(key));
    EXPECT_EQ(run.effects.find("AXPress"), std::string::npos) << key;
    EXPECT_EQ(keySteps(mac).substr(0, 9), "down 55, ") << key;
    for (const std::string& call : run.calls) EXPECT_NE(call, "ax.perform");
  }
}

TEST(menu_shortcut, of_a_disabled_item_is_posted_as_keys) {
  const std::string own = "attribute AXMenuItemCmdChar \"k\"";
  EXPECT_EQ(outcome("        menu A > B cmd k disabled press: set Body \"no\"\n", "cmd+k"),
            "; down 55, down 40, up 40, up 55");
  EXPECT_EQ(outcome(itemWith(own + " failing AXEnabled -25212"), "cmd+k"), "pressed; ");
}

TEST(menu_shortcut, of_a_disabled_item_goes_to_the_enabled_one) {
  EXPECT_EQ(outcome(R"(
        menu A > One cmd k press: set Body "one"
        menu A > Two cmd k disabled press: set Body "two"
)",
                    "cmd+k"),
            "one; ");
}

TEST(menu_shortcut, of_several_items_is_the_one_found_first_from_the_end) {
  EXPECT_EQ(outcome(R"(
        menu A > One cmd k press: set Body "one"
        menu A > Two cmd k press: set Body "two"
)",
                    "cmd+k"),
            "two; ");
  EXPECT_EQ(outcome(R"(
        menu A > One cmd k press: set Body "one"
        menu A > More > Two cmd k press: set Body "two"
        menu B > Three cmd j press: set Body "three"
)",
                    "cmd+k"),
            "two; ");
}

TEST(menu_shortcut, is_of_menu_items_alone) {
  EXPECT_EQ(
      outcome("        AXMenuBar\n            AXButton \"B\" attribute AXMenuItemCmdChar \"k\" "
              "press: set Body \"no\"\n",
              "cmd+k"),
      "; down 55, down 40, up 40, up 55");
}

/// A menu bar with an item at this depth, below groups.
std::string itemAtDepth(int depth) {
  std::string text = "        AXMenuBar\n";
  std::string indent = "            ";
  for (int level = 1; level < depth; ++level, indent += "    ") text += indent + "AXGroup\n";
  return text + indent +
         "AXMenuItem \"B\" attribute AXMenuItemCmdChar \"k\" press: set Body \"pressed\"\n";
}

TEST(menu_shortcut, is_looked_for_six_levels_below_the_menu_bar) {
  for (int depth = 1; depth <= 6; ++depth) {
    EXPECT_EQ(outcome(itemAtDepth(depth), "cmd+k"), "pressed; ") << depth;
  }
  EXPECT_EQ(outcome(itemAtDepth(7), "cmd+k").find("; down 55"), 0U);
}

TEST(menu_shortcut, is_looked_for_outside_the_window_scope_too) {
  TestMac mac(deskWith(saveMenu));
  EXPECT_EQ(seen(mac.driver("bg-key Notes cmd+s", {{"CU_WINDOW", "inbox"}})), pressed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "saved");
}

TEST(menu_shortcut, that_its_item_refuses_is_the_refusal_and_focus_is_given_back) {
  for (const char* code : {"-25200", "-25202", "-25204", "-25205", "-25211", "-25212"}) {
    TestMac mac(deskWith(saveMenu), {"ax.perform 1 error " + std::string(code)});

    const Result run = mac.driver("bg-key Notes Cmd+S");

    EXPECT_EQ(seen(run), refused("target menu shortcut failed: Cmd+S"));
    EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  390 ms  focus 41/7 take
)");
    EXPECT_EQ(run.elapsed, 430'000);
  }
}

TEST(menu_shortcut, that_quits_its_application_is_a_success) {
  TestMac mac(deskWith("        menu A > Quit cmd q press: quit\n"));

  const Result run = mac.driver("bg-key Notes cmd+q");

  EXPECT_EQ(seen(run), pressed);
  EXPECT_EQ(run.elapsed, 490'000);  // nobody is left to take focus from
}

TEST(menu_shortcut, is_withheld_when_the_session_has_become_unusable_before_the_press) {
  for (const char* happening : {"lock", "leave console"}) {
    SCOPED_TRACE(happening);
    TestMac mac(deskWith(saveMenu, "    at 339ms " + std::string(happening) + "\n"));

    const Result run = mac.driver("bg-key Notes cmd+s");

    EXPECT_EQ(seen(run), withheld);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
    EXPECT_EQ(waits(mac), "40000 300000 50000 40000");
    EXPECT_EQ(mac.world().applications[1].focusByRecord, 0U);
  }
}

TEST(menu_shortcut, that_was_pressed_before_a_lock_is_a_success) {
  TestMac mac(deskWith(saveMenu, "    at 341ms lock\n"));
  EXPECT_EQ(seen(mac.driver("bg-key Notes cmd+s")), pressed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "saved");
}

TEST(menu_shortcut, is_not_pressed_when_the_capture_service_has_gone) {
  TestMac mac(deskWith(saveMenu, "    at 339ms end process 900\n"));

  const Result run = mac.driver("bg-key Notes cmd+s", {{"CU_CAPTURE_PID", "900"}});

  EXPECT_EQ(seen(run), failure("native screen sharing stopped; background input is disabled"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
  EXPECT_EQ(waits(mac), "40000 300000 40000");
}

TEST(menu_shortcut, of_a_user_with_another_layout_is_known_by_its_character) {
  for (const char* layout : {"german", "french", "japanese"}) {
    TestMac mac(deskWith(saveMenu, "    keyboard " + std::string(layout) + "\n"));
    EXPECT_EQ(seen(mac.driver("bg-key Notes cmd+z")), pressed);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "undone") << layout;
    EXPECT_EQ(keySteps(mac), "");
  }
}

}  // namespace keys_menu_test
