#include "simulator/rules/keys.h"

#include <gtest/gtest.h>

#include "simulator/rules/pace.h"
#include "simulator/world/keyboard_layouts.h"
#include "tests/support/broken_run.h"

/// Runs that press keys, type or paste wrongly, and the rule that each of them breaks.
namespace simulator {

namespace {

using driver::pack;
using platform::EventImage;
using platform::Function;
using testing_support::broken_run;
using testing_support::Sentences;

class broken_keys : public broken_run {
 protected:
  static constexpr ElementId gone = 99;  // an element that there is not, or not any more

  void run(const char* command, const char* payload) {
    client_.arguments = {"driver", command, "Notes", payload};
  }

  EventImage text(std::uint32_t type, const std::string& lowBytes) {
    EventImage image = key(type, 0);
    for (const char c : lowBytes) image.text += {c, '\0'};
    return image;
  }

  void postKey(const EventImage& image) {
    if (image.type == keyDown) askForFront(mac_.world.frontmost);
    postOnly(image, 41, Function::publicPost);
    sleep(waitAfterPost);
  }

  void postKeys(std::initializer_list<std::pair<std::uint32_t, std::int64_t>> steps,
                std::uint64_t flags) {
    for (const auto& [type, code] : steps) postKey(key(type, code, flags));
  }

  void breakLine() {
    postKeys({{keyDown, 56}, {keyDown, 36}, {keyUp, 36}, {keyUp, 56}}, shiftFlag);
    sleep(50'000);
  }

  void typeText(const std::string& lowBytes) {
    postKey(text(keyDown, lowBytes));
    postKey(text(keyUp, lowBytes));
  }

  /// The end of a run that has pressed no key, and what the rule for keys finds.
  Sentences endOfKeys(bool ok) {
    WatchedRun facts(mac_, client_);
    facts.reply = ReplyFacts{.ok = ok};
    Sentences violations;
    KeyRules(facts).atEnd(violations);
    return violations;
  }

  void keyRecord(char type, WindowNumber window = 7, std::int32_t status = 0) {
    std::string record(248, '\0');
    record[0x08] = type;
    record[0x3C] = static_cast<char>(window);
    call(Function::postRecord, {pack(0), pack(41), pack(record)}, pack(status));
  }
};

TEST_F(broken_keys, are_not_those_of_a_correct_run) {
  run("bg-key", "cmd+shift+S");
  focusRecord(true);
  keyRecord(1);
  keyRecord(2);
  sleep(300'000);
  postKeys({{keyDown, 55}, {keyDown, 56}, {keyDown, 1}, {keyUp, 1}, {keyUp, 56}, {keyUp, 55}},
           commandFlag | shiftFlag);
  sleep(50'000);
  askForFront(40);
  askForSerial(0);
  focusRecord(false);

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_keys, are_not_those_of_a_text_typed_in_pieces) {
  run("bg-type", "ab\r\n\nc");
  typeText("a");
  typeText("b");
  breakLine();
  breakLine();
  typeText("c");

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_keys, are_not_those_of_a_menu_that_took_the_shortcut) {
  run("bg-paste-files", "/a");
  checkSession();
  askForFront(40);
  call(Function::axPerform, {pack(platform::ElementReference{41, gone}), pack("AXPress")},
       pack(ax::Outcome{}));
  sleep(100'000);

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_keys, that_press_a_menu_item_of_another_shortcut) {
  mac_.world = parseWorld(R"(
    app Notes pid 41
        menu File > Save cmd s
        menu File > "Save As" cmd shift s
        menu File > Close cmd w disabled
        menu File > Plain
        window 7 "Inbox" at 100,100 size 200x200)");
  const auto press = [&](const char* combination, const std::string& title) {
    run("bg-key", combination);
    WatchedRun facts(mac_, client_);
    KeyRules rule(facts);
    Sentences violations;
    for (const Element& each : mac_.world.applications.front().elements) {
      const auto own = each.attributes.find("AXTitle");
      if (own == each.attributes.end() || own->second != AttributeValue(title)) continue;
      const platform::Call call{Function::axPerform,
                                {pack(platform::ElementReference{41, each.id}), pack("AXPress")}};
      rule.before({call}, violations);
    }
    return violations;
  };
  const Sentences other = {"I8: a menu item is pressed that has not this shortcut"};

  EXPECT_EQ(press("cmd+s", "Save"), Sentences{});
  EXPECT_EQ(press("Shift+Cmd+S", "Save As"), Sentences{});
  EXPECT_EQ(press("cmd+shift+s", "Save"), other);
  EXPECT_EQ(press("cmd+s", "Save As"), other);
  EXPECT_EQ(press("cmd+a", "Save"), other);
  EXPECT_EQ(press("cmd+w", "Close"), other);
  EXPECT_EQ(press("cmd+s", "Plain"), other);
  EXPECT_EQ(press("cmd+s", "Inbox"), other);
}

TEST_F(broken_keys, that_type_longer_pieces_than_receivers_take) {
  const std::string twenty = "12345678901234567890";
  run("bg-type", "1234567890123456789012345678901234567890x");
  typeText(twenty);
  EXPECT_EQ(violations_, Sentences{});
  typeText(twenty + "x");
  EXPECT_EQ(violations_, Sentences{"I8: a piece of text is longer than receivers take"});
}

TEST_F(broken_keys, that_hurry_after_a_menu_a_line_a_record_or_a_restored_focus) {
  run("bg-type", "\n");
  checkSession();
  postKeys({{keyDown, 56}, {keyDown, 36}, {keyUp, 36}, {keyUp, 56}}, shiftFlag);
  keyRecord(1);
  keyRecord(2);
  askForFront(40);
  call(Function::axPerform, {pack(platform::ElementReference{41, gone}), pack("AXPress")},
       pack(ax::Outcome{}));
  call(Function::axSetAttribute,
       {pack(platform::ElementReference{41, 3}), pack("AXFocused"), pack(true)},
       pack(ax::Outcome{}));
  checkSession();

  EXPECT_EQ(
      end(done),
      (Sentences{"I5: a wait of 50000 us is missing", "I5: a wait of 300000 us is missing",
                 "I5: a wait of 100000 us is missing", "I5: a wait of 100000 us is missing"}));
}

TEST_F(broken_keys, owe_no_wait_for_what_was_refused) {
  run("bg-key", "a");
  checkSession();
  keyRecord(1);
  keyRecord(2, 7, -600);
  askForFront(40);
  call(Function::axPerform, {pack(platform::ElementReference{41, gone}), pack("AXPress")},
       pack(ax::Outcome{ax::Error::failure, false}));

  EXPECT_EQ(end(), Sentences{});
}

TEST_F(broken_keys, that_take_focus_back_at_once) {
  run("bg-key", "a");
  focusRecord(true);
  postKeys({{keyDown, 0}, {keyUp, 0}}, 0);
  focusRecord(false);

  EXPECT_EQ(end(done), Sentences{"I5: focus is taken back without the wait before it"});
}

TEST_F(broken_keys, that_carry_other_modifiers_than_told) {
  run("bg-key", "ctrl+a");
  postKey(key(keyDown, 59, controlFlag));
  postKey(key(keyDown, 0, commandFlag));
  EventImage unset = key(keyUp, 0);
  unset.flags.reset();
  postKey(unset);
  postKey(key(keyUp, 59, controlFlag));

  EXPECT_EQ(end(done), (Sentences{"I3: a key with other modifiers than it was told",
                                  "I3: a key with other modifiers than it was told"}));
}

TEST_F(broken_keys, that_stay_down) {
  run("bg-key", "cmd+a");
  postKeys({{keyDown, 55}, {keyDown, 0}, {keyUp, 0}}, commandFlag);

  EXPECT_EQ(end(), Sentences{"I4: a key was left down"});
}

TEST_F(broken_keys, that_go_up_in_another_order) {
  run("bg-key", "cmd+shift+a");
  postKeys({{keyDown, 55}, {keyDown, 56}, {keyDown, 0}, {keyUp, 0}, {keyUp, 55}, {keyUp, 56}},
           commandFlag | shiftFlag);

  EXPECT_EQ(end(), Sentences{"I4: keys went up in another order than they should"});
}

TEST_F(broken_keys, that_go_up_without_having_gone_down) {
  run("bg-key", "a");
  postKeys({{keyUp, 0}}, 0);

  EXPECT_EQ(end(), Sentences{"I4: keys went up in another order than they should"});
}

TEST_F(broken_keys, are_not_those_of_a_combination_that_could_not_be_created) {
  run("bg-key", "cmd+a");
  call(Function::createKeyboardEvent, {});

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_keys, of_which_the_release_could_not_be_created) {
  run("bg-key", "cmd+a");
  call(Function::createKeyboardEvent, {});
  postKeys({{keyDown, 55}, {keyDown, 0}, {keyUp, 55}}, commandFlag);

  EXPECT_EQ(end(done), (Sentences{"I4: a key was left down",
                                  "I4: keys went up in another order than they should",
                                  "I8: a success without all of the input"}));
}

TEST_F(broken_keys, of_which_the_modifiers_alone_were_posted) {
  run("bg-key", "cmd+a");
  call(Function::createKeyboardEvent, {});
  postKeys({{keyDown, 55}, {keyUp, 55}}, commandFlag);

  EXPECT_EQ(end(done), Sentences{"I8: a success without all of the input"});
}

TEST_F(broken_keys, are_not_those_of_a_text_without_what_could_not_be_created) {
  run("bg-type", "a\nb\nc");
  typeText("a");
  breakLine();
  typeText("c");
  call(Function::createKeyboardEvent, {});
  call(Function::createKeyboardEvent, {});

  EXPECT_EQ(end(done), Sentences{});
}

TEST_F(broken_keys, of_a_text_without_more_than_could_not_be_created) {
  run("bg-type", "a\nb\nc");
  typeText("a");
  breakLine();
  typeText("c");
  call(Function::createKeyboardEvent, {});

  EXPECT_EQ(end(done), Sentences{"I8: a success without all of the input"});
}

TEST_F(broken_keys, of_another_text_than_was_told_beside_what_could_not_be_created) {
  run("bg-type", "ab");
  typeText("ba");
  call(Function::createKeyboardEvent, {});

  EXPECT_EQ(end(done), Sentences{"I8: a success without all of the input"});
}

TEST_F(broken_keys, of_which_another_number_is_told) {
  for (const int typed : {1, 2, 3}) {
    client_.exited = false;
    run("bg-type", "a\nb");
    Rules rules(mac_, client_);
    Sentences violations;
    const auto post = [&](const EventImage& image) {
      rules.before({Function::frontProcess, {}}, 0, violations);
      rules.after({Function::frontProcess, {}}, {pack(std::vector<std::int64_t>{-600, 0, 0})},
                  false, 0, violations);
      rules.before({Function::publicPost, {pack(Pid{41}), pack(image)}}, 0, violations);
      rules.before({Function::sleep, {pack(waitAfterPost)}}, 0, violations);
    };
    post(text(keyDown, "a"));
    post(text(keyUp, "a"));
    for (const auto& [type, code] : std::initializer_list<std::pair<std::uint32_t, std::int64_t>>{
             {keyDown, 56}, {keyDown, 36}, {keyUp, 36}, {keyUp, 56}}) {
      post(key(type, code, shiftFlag));
    }
    rules.before({Function::sleep, {pack(50'000)}}, 0, violations);
    client_.exited = true;
    client_.output = "{\"error\":\"x\",\"ok\":false,\"typed\":" + std::to_string(typed) + "}\n";
    rules.finish(violations);
    const Sentences wrong = {"I8: another number of units is told than was typed"};
    EXPECT_EQ(violations, typed == 2 ? Sentences{} : wrong);
  }
}

TEST_F(broken_keys, that_succeed_with_something_left_out) {
  const Sentences incomplete = {"I8: a success without all of the input"};
  const std::pair<const char*, const char*> commands[] = {
      {"bg-key", "a"}, {"bg-type", "a"}, {"bg-type", "\n"}, {"bg-paste-files", "/a"}};
  for (const auto& [command, payload] : commands) {
    run(command, payload);
    EXPECT_EQ(endOfKeys(true), incomplete) << command;
    EXPECT_EQ(endOfKeys(false), Sentences{}) << command;
  }
  run("bg-type", "");
  EXPECT_EQ(endOfKeys(true), Sentences{});
}

TEST_F(broken_keys, that_succeed_with_another_key_or_text) {
  run("bg-type", "ab");
  typeText("aB");
  EXPECT_EQ(end(done), Sentences{"I8: a success without all of the input"});
}

TEST_F(broken_keys, are_known_by_their_names) {
  const std::pair<const char*, std::int64_t> names[] = {
      {"enter", 36}, {"esc", 53}, {"backspace", 51}, {"\\", 42}, {"`", 50}, {"5", 23}};
  for (const auto& [name, code] : names) {
    run("bg-key", name);
    Rules rules(mac_, client_);
    Sentences violations;
    for (const std::uint32_t type : {keyDown, keyUp}) {
      rules.before({Function::frontProcess, {}}, 0, violations);
      rules.after({Function::frontProcess, {}}, {pack(std::vector<std::int64_t>{-600, 0, 0})},
                  false, 0, violations);
      rules.before({Function::publicPost, {pack(Pid{41}), pack(key(type, code))}}, 0, violations);
      rules.before({Function::sleep, {pack(waitAfterPost)}}, 0, violations);
    }
    client_.exited = true;
    client_.output = done;
    rules.finish(violations);
    EXPECT_EQ(violations, Sentences{}) << name;
  }
}

TEST_F(broken_keys, are_not_counted_as_focus_taken_back_when_a_serial_is_missing_before) {
  run("bg-key", "a");
  focusRecord(true);
  askForSerial(-600);
  sleep(50'000);
  askForFront(40);
  askForSerial(0);
  focusRecord(false);

  EXPECT_EQ(end(), Sentences{});
}

}  // namespace

}  // namespace simulator
