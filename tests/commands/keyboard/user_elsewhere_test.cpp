#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "tests/support/pasting.h"
#include "tests/support/posted_keys.h"

/// The user goes to another window of the target while keys are on their way: what is left of them
/// stays away, and the reply says how far they came.
namespace user_elsewhere_test {

using namespace testing_support;

/// Private is to the right of Inbox.
std::string deskWith(const std::string& script) {
  return R"(
    process 900
    pointer 900,200
    pasteboard item "public.utf8-plain-text" "old"
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        menu File > Save cmd s press: append "saved" to Body
        window 7 "Inbox" at 300,80 size 500x600
            AXTextArea "Body" at 320,130 size 400x400
        window 9 "Private" at 850,80 size 400x600
            AXTextArea "Own" at 860,100 size 300x300
)" + script;
}

constexpr const char* toPrivate = "user click 900,200";
constexpr const char* toInbox = "user click 400,300";

std::string at(const std::string& time, const std::string& happening) {
  return "    at " + time + " " + happening + "\n";
}

std::string before(const std::string& call, const std::string& happening) {
  return call + " before " + happening;
}

std::string withheldAfter(int units) {
  return success(R"({"error":"the user's keyboard is in another window of the target app by now; )"
                 R"(the rest of the input was withheld","ok":false,"typed":)" +
                 std::to_string(units) + "}");
}

const std::string windowChanged = success(
    R"({"error":"another window of the target app has become key; nothing was pressed","ok":false})");

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

const std::string sixtyLetters(60, 'x');

simulator::WindowNumber keyWindow(const TestMac& mac) {
  const simulator::Application& notes = mac.world().applications[1];
  return simulator::findElement(notes, notes.focusedWindow)->window;
}

TEST(a_user_who_comes_before_the_window_is_made_key, keeps_the_keyboard) {
  TestMac mac(deskWith(at("10ms", toPrivate)));

  const Result run = mac.driver("bg-type Notes secret");

  EXPECT_EQ(seen(run), withheldAfter(0));
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   10 ms  happening user click 900,200: Notes: focused AXTextArea "Own"
)");
  EXPECT_EQ(keyWindow(mac), 9U);
  EXPECT_EQ(run.elapsed, 90'000);
}

TEST(a_user_who_comes_before_the_window_is_made_key, to_that_window_gets_the_keys_there) {
  TestMac mac(deskWith(at("10ms", toInbox)));

  const Result run = mac.driver("bg-type Notes hello");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello");
  EXPECT_EQ(run.effects.find("key 41/7"), std::string::npos);
}

TEST(a_user_who_comes_while_the_window_is_made_key, is_left_alone) {
  for (const char* command : {"bg-type Notes secret", "bg-key Notes x", "bg-key Notes cmd+s",
                              "bg-paste-files Notes /a"}) {
    SCOPED_TRACE(command);
    TestMac mac(deskWith(at("200ms", toPrivate)));

    const Result run = mac.driver(command, {{"CU_WINDOW", "inbox"}});

    EXPECT_EQ(seen(run), withheldAfter(0));
    EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  200 ms  happening user click 900,200: Notes: focused AXTextArea "Own"
)");
    EXPECT_EQ(run.elapsed, 390'000);
  }
}

TEST(a_user_who_comes_while_a_text_is_typed, stops_it_before_its_next_piece) {
  const std::vector<std::string> command = {"bg-type", "Notes", sixtyLetters};
  for (const int pieces : {1, 2}) {
    SCOPED_TRACE(pieces);
    const int time = 340 + 24 * pieces - 1;
    TestMac mac(deskWith(at(std::to_string(time) + "ms", toPrivate)));

    const Result run = mac.driverWith(command);

    EXPECT_EQ(seen(run), withheldAfter(20 * pieces));
    EXPECT_EQ(mac.valueOf("Notes", "Body"),
              std::string(static_cast<std::size_t>(20 * pieces), 'x'));
    EXPECT_EQ(mac.valueOf("Notes", "Own"), "");
    EXPECT_EQ(run.effects.find("take"), std::string::npos);
    EXPECT_EQ(run.elapsed, (340 + 24 * pieces + 50) * 1000);
  }
}

TEST(a_user_who_comes_while_a_text_is_typed, to_its_window_changes_nothing) {
  TestMac mac(deskWith(at("350ms", toInbox)));

  const Result run = mac.driverWith({"bg-type", "Notes", sixtyLetters});

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), sixtyLetters);
  EXPECT_EQ(run.elapsed, 340'000 + 3 * 24'000 + 50'000);
}

TEST(a_user_who_comes_while_a_text_is_typed, finds_line_breaks_counted_as_one_unit) {
  const std::vector<std::string> command = {"bg-type", "Notes", "a\r\n\U0001F600b"};
  struct Case {
    const char* time;
    int units;
    const char* steps;
  };
  const std::vector<Case> cases = {
      {"363ms", 1, "down 0, up 0"},
      // Shift comes up again.
      {"375ms", 1, "down 0, up 0, down 56, up 56"},
      {"387ms", 2, "down 0, up 0, down 56, down 36, up 36, up 56"},
      {"461ms", 2, "down 0, up 0, down 56, down 36, up 36, up 56"},
  };
  for (const Case& each : cases) {
    SCOPED_TRACE(each.time);
    TestMac mac(deskWith(at(each.time, toPrivate)));
    EXPECT_EQ(seen(mac.driverWith(command)), withheldAfter(each.units));
    EXPECT_EQ(keySteps(mac), each.steps);
  }
  TestMac mac(deskWith(at("463ms", toPrivate)));
  EXPECT_EQ(seen(mac.driverWith(command)), typed);
}

TEST(a_user_who_comes_in_mid_chord, meets_its_modifiers_coming_up_and_not_its_key) {
  for (const int modifiers : {1, 2}) {
    SCOPED_TRACE(modifiers);
    TestMac mac(deskWith(""), {before("quartz.post " + std::to_string(modifiers), toPrivate)});

    const Result run = mac.driver("bg-key Notes ctrl+shift+x");

    EXPECT_EQ(seen(run), withheldAfter(0));
    EXPECT_EQ(keySteps(mac), "down 56, down 59, up 59, up 56");
    EXPECT_TRUE(mac.world().applications[1].keysDown.empty());
  }
}

TEST(a_user_who_comes_in_mid_chord, after_its_key_meets_what_comes_up) {
  TestMac mac(deskWith(""), {before("quartz.post 4", toPrivate)});

  EXPECT_EQ(seen(mac.driver("bg-key Notes ctrl+shift+x")), typed);
  EXPECT_EQ(keySteps(mac), "down 56, down 59, down 7, up 7, up 59, up 56");
}

TEST(a_user_who_comes_while_menus_are_searched, sees_no_item_pressed) {
  // The menus are what is read last.
  TestMac counted(deskWith(""));
  int reads = 0;
  for (const std::string& call : counted.driver("bg-key Notes cmd+s").calls) {
    if (call == "ax.attributes") ++reads;
  }
  TestMac mac(deskWith(""), {before("ax.attributes " + std::to_string(reads), toPrivate)});

  const Result run = mac.driver("bg-key Notes cmd+s");

  EXPECT_EQ(seen(run), withheldAfter(0));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
}

/// The calls of a run in which menus are searched, from the first of these to what follows the
/// last.
std::vector<std::string> searchOf(const char* command) {
  TestMac mac(deskWith(""));
  std::vector<std::string> calls = mac.driver(command).calls;
  std::vector<std::string> numbered;
  for (std::size_t i = 0; i < calls.size(); ++i) {
    const bool isReading = calls[i] == "ax.attributes" || calls[i] == "ax.attribute";
    if (isReading) numbered.push_back("any " + std::to_string(i + 1));
  }
  // The five last: the menu bar, the four elements of it.
  return {numbered.end() - 6, numbered.end()};
}

// Nobody looks who is in front while menus are searched, which takes up to some seconds.
TEST(a_user_who_comes_and_goes_while_menus_are_searched, leaves_no_other_window_to_the_command) {
  for (const char* command :
       {"bg-key Notes cmd+s", "bg-key Notes cmd+b", "bg-paste-files Notes /a"}) {
    for (const std::string& call : searchOf(command)) {
      SCOPED_TRACE(std::string(command) + ", " + call);
      const std::string number = call.substr(4);
      TestMac mac(deskWith(""),
                  {before(call, toPrivate),
                   before("any " + std::to_string(std::stoi(number) + 1), "front Browser")});

      const Result run = mac.driver(command);

      EXPECT_EQ(seen(run), windowChanged);
      EXPECT_EQ(keySteps(mac), "");
      EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
      EXPECT_EQ(clipboard(mac), "public.utf8-plain-text=old");
    }
  }
}

TEST(a_user_who_comes_and_goes_while_menus_are_searched,
     and_leaves_the_window_key_changes_nothing) {
  for (const std::string& call : searchOf("bg-key Notes cmd+s")) {
    TestMac mac(deskWith(""), {before(call, toInbox)});
    EXPECT_EQ(seen(mac.driver("bg-key Notes cmd+s")), typed);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "saved");
  }
}

std::string leftAfter(int units) {
  return success(
      R"({"error":"the target app is no longer in front; the rest of the input was withheld",)"
      R"("ok":false,"typed":)" +
      std::to_string(units) + "}");
}

// Behind it takes keys with focus alone, which an application in front is not given.
TEST(a_user_who_leaves_an_application_in_front, ends_a_text_before_its_next_piece) {
  TestMac mac(deskWith(at("30ms", "front Notes")));

  const Result run = mac.driverWith({"bg-type", "Browser", sixtyLetters});

  EXPECT_EQ(seen(run), leftAfter(40));
  EXPECT_EQ(mac.valueOf("Browser", "Address"), std::string(40, 'x'));
  EXPECT_EQ(run.elapsed, 48'000);
}

TEST(a_user_who_leaves_an_application_in_front, ends_a_chord_before_its_key) {
  TestMac mac(deskWith(""), {before("quartz.post 2", "front Notes")});

  EXPECT_EQ(seen(mac.driver("bg-key Browser ctrl+shift+x")), leftAfter(0));
  EXPECT_EQ(keySteps(mac), "down 56, down 59, up 59, up 56");
}

TEST(a_user_who_leaves_an_application_in_front, whose_focus_is_held_ends_nothing) {
  TestMac mac(deskWith(at("30ms", "front Notes")));
  mac.desktop().mac().world.applications[0].focusByRecord = 5;

  const Result run = mac.driverWith({"bg-type", "Browser", sixtyLetters}, {{"CU_FOCUS_PID", "40"}});

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":40,"via":"background","window":5})"));
  EXPECT_EQ(mac.valueOf("Browser", "Address"), sixtyLetters);
}

TEST(a_user_who_comes_while_files_are_pasted, sees_no_paste_and_has_the_clipboard_back) {
  TestMac mac(deskWith(""), {before("pasteboard.write-files 1", toPrivate)});

  const Result run = mac.driver("bg-paste-files Notes /a");

  EXPECT_EQ(seen(run), withheldAfter(0));
  EXPECT_EQ(keySteps(mac), "");
  EXPECT_EQ(clipboard(mac), "public.utf8-plain-text=old");
}

TEST(a_user_who_comes_while_files_are_pasted, before_the_clipboard_is_taken_keeps_it) {
  TestMac mac(deskWith(at("200ms", toPrivate)));

  const Result run = mac.driver("bg-paste-files Notes /a");

  EXPECT_EQ(seen(run), withheldAfter(0));
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "pasteboard.items"), 0);
}

/// Notes is in front, with its keyboard in Inbox.
std::string inFrontWith(const std::string& script) { return deskWith(at("0ms", toInbox) + script); }

TEST(a_user_of_the_target, who_goes_to_another_window_stops_the_text) {
  TestMac mac(inFrontWith(at("30ms", toPrivate)));

  const Result run = mac.driverWith({"bg-type", "Notes", sixtyLetters});

  EXPECT_EQ(seen(run), withheldAfter(40));
  EXPECT_EQ(mac.valueOf("Notes", "Own"), "");
  EXPECT_EQ(run.elapsed, 48'000);
}

TEST(a_user_of_the_target, who_goes_right_after_the_first_look_stops_it_too) {
  TestMac mac(inFrontWith(""), {before("quartz.create-keyboard-event 1", toPrivate)});

  EXPECT_EQ(seen(mac.driver("bg-type Notes secret")), withheldAfter(0));
  EXPECT_EQ(mac.valueOf("Notes", "Own"), "");
}

TEST(a_user_of_the_target, who_stays_has_all_of_it) {
  TestMac mac(inFrontWith(""));
  EXPECT_EQ(seen(mac.driverWith({"bg-type", "Notes", sixtyLetters})), typed);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), sixtyLetters);
}

TEST(a_user_of_the_target, whose_keyboard_cannot_be_found_gets_no_more_keys) {
  TestMac counted(inFrontWith(""));
  int reads = 0;
  bool isPosted = false;
  for (const std::string& call : counted.driver("bg-type Notes x").calls) {
    isPosted = isPosted || call == "quartz.post";
    if (!isPosted && call == "windowserver.windows") ++reads;
  }
  TestMac mac(inFrontWith(""), {"windowserver.windows " + std::to_string(reads) + " absent"});
  EXPECT_EQ(seen(mac.driver("bg-type Notes secret")), withheldAfter(0));
}

TEST(a_user_somewhere_else, is_not_known_to_be_in_the_target) {
  // Nobody tells who is in front when the text is typed: that is not to be in its way.
  TestMac mac(deskWith(""), {"private.front-process 3+ error -600"});
  EXPECT_EQ(seen(mac.driver("bg-type Notes hello")), typed);
}

}  // namespace user_elsewhere_test
