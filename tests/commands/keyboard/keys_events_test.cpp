#include <gtest/gtest.h>

#include "input/key_codes.h"
#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// What "bg-key" posts: which events, in which order, and when.
namespace keys_events_test {

using namespace testing_support;

std::string deskWith(const std::string& more) {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        menu Edit > Copy control c press: append " copied" to Body
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400 value "hello"
)" + more;
}

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

/// A refusal found while working: the status is 0.
std::string refused(const std::string& message) {
  return success("{\"error\":\"" + message + "\",\"ok\":false}");
}

TEST(keys, press_and_release_one_key_in_454_milliseconds) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-key Notes a");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  340 ms  post 41/7 key-down 0 public: typed "a" into AXTextArea "Body"
  352 ms  post 41/7 key-up 0 public
  414 ms  focus 41/7 take
)");
  EXPECT_EQ(waits(mac), "40000 300000 12000 12000 50000 40000");
  EXPECT_EQ(run.elapsed, 454'000);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "helloa");
  EXPECT_EQ(mac.valueOf("Browser", "Address"), "");
}

TEST(keys, go_by_the_public_route_without_a_source_and_with_the_own_tag) {
  TestMac mac(deskWith(""));

  mac.driver("bg-key Notes a");

  EXPECT_EQ(postedKeys(mac),
            R"(  340 ms public to 41: down 0 flags 0x0 42=1515475542
  352 ms public to 41: up 0 flags 0x0 42=1515475542
)");
}

TEST(keys, do_not_carry_the_modifiers_that_the_user_holds) {
  TestMac mac(deskWith("    at 100ms user press cmd\n"));

  mac.driver("bg-key Notes a");

  EXPECT_EQ(postedKeys(mac),
            R"(  340 ms public to 41: down 0 flags 0x0 42=1515475542
  352 ms public to 41: up 0 flags 0x0 42=1515475542
)");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "helloa");
}

TEST(keys, press_all_modifiers_in_their_order_and_release_them_in_reverse) {
  for (const char* combination : {"cmd+shift+alt+ctrl+x", "ctrl+opt+shift+x+super",
                                  "control+option+shift+meta+x", "x+command+alt+ctrl+shift"}) {
    SCOPED_TRACE(combination);
    TestMac mac(deskWith(""));

    const Result run = mac.driver("bg-key Notes " + std::string(combination));

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(postedKeys(mac),
              R"(  340 ms public to 41: down 55 flags 0x1e0000 42=1515475542
  352 ms public to 41: down 56 flags 0x1e0000 42=1515475542
  364 ms public to 41: down 58 flags 0x1e0000 42=1515475542
  376 ms public to 41: down 59 flags 0x1e0000 42=1515475542
  388 ms public to 41: down 7 flags 0x1e0000 42=1515475542
  400 ms public to 41: up 7 flags 0x1e0000 42=1515475542
  412 ms public to 41: up 59 flags 0x1e0000 42=1515475542
  424 ms public to 41: up 58 flags 0x1e0000 42=1515475542
  436 ms public to 41: up 56 flags 0x1e0000 42=1515475542
  448 ms public to 41: up 55 flags 0x1e0000 42=1515475542
)");
    EXPECT_EQ(run.elapsed, 550'000);
    EXPECT_TRUE(mac.world().applications[1].keysDown.empty());
  }
}

TEST(keys, press_each_modifier_only_when_it_is_named) {
  const std::pair<const char*, const char*> chords[] = {
      {"cmd+b", "down 55, down 11, up 11, up 55"},
      {"shift+b", "down 56, down 11, up 11, up 56"},
      {"alt+b", "down 58, down 11, up 11, up 58"},
      {"ctrl+b", "down 59, down 11, up 11, up 59"},
      {"ctrl+shift+b", "down 56, down 59, down 11, up 11, up 59, up 56"},
      {"alt+cmd+b", "down 55, down 58, down 11, up 11, up 58, up 55"},
      {"shift+shift+b", "down 56, down 11, up 11, up 56"},
  };
  for (const auto& [combination, steps] : chords) {
    TestMac mac(deskWith(""));
    EXPECT_EQ(seen(mac.driver("bg-key Notes " + std::string(combination))), typed);
    EXPECT_EQ(keySteps(mac), steps) << combination;
  }
}

TEST(keys, are_all_known_by_their_names) {
  for (const driver::KeyName& key : driver::keyCodes) {
    TestMac mac(deskWith(""));
    const std::string code = std::to_string(key.code);

    const Result run = mac.driverWith({"bg-key", "Notes", std::string(key.name)});

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), "down " + code + ", up " + code) << key.name;
  }
}

TEST(keys, of_which_several_are_named_are_the_last_one) {
  TestMac mac(deskWith(""));

  EXPECT_EQ(seen(mac.driver("bg-key Notes cmd+a+b")), typed);

  EXPECT_EQ(postedKeys(mac),
            R"(  340 ms public to 41: down 55 flags 0x100000 42=1515475542
  352 ms public to 41: down 11 flags 0x100000 42=1515475542
  364 ms public to 41: up 11 flags 0x100000 42=1515475542
  376 ms public to 41: up 55 flags 0x100000 42=1515475542
)");
}

TEST(keys, with_control_alone_are_posted_although_a_menu_item_has_them) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-key Notes ctrl+c");

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(keySteps(mac), "down 59, down 8, up 8, up 59");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello copied");  // the application looks by itself
  EXPECT_EQ(run.elapsed, 478'000);
}

TEST(keys, that_are_no_combination_post_nothing_and_give_focus_back) {
  const std::pair<const char*, const char*> wrong[] = {
      {"shift", "no key in combo: shift"}, {"Cmd+Shift", "no key in combo: Cmd+Shift"},
      {"", "no key in combo: "},           {"+", "no key in combo: +"},
      {"cmd++", "no key in combo: cmd++"}, {"cmd+f13", "unknown key: f13"},
      {"CMD+F13", "unknown key: f13"},     {"f13+zz", "unknown key: f13"},
      {"a+f1", "unknown key: f1"},         {"cmd + s", "unknown key: cmd "},
      {"\u00E9", "unknown key: \u00E9"},   {"fn+a", "unknown key: fn"},
  };
  for (const auto& [combination, message] : wrong) {
    SCOPED_TRACE(combination);
    TestMac mac(deskWith(""));

    const Result run = mac.driverWith({"bg-key", "Notes", combination});

    EXPECT_EQ(seen(run), refused(message));
    EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  390 ms  focus 41/7 take
)");
    EXPECT_EQ(run.elapsed, 430'000);
  }
}

TEST(keys, that_are_no_combination_are_refused_in_front_at_once) {
  TestMac mac(deskWith(""));

  const Result run = mac.driver("bg-key Browser cmd+f13");

  EXPECT_EQ(seen(run), refused("unknown key: f13"));
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(keys, of_which_one_event_cannot_be_created_all_stay_away) {
  // What goes down must come up.
  for (const char* which : {"1", "2", "3", "4", "5", "6", "1+"}) {
    TestMac mac(deskWith(""), {"quartz.create-keyboard-event " + std::string(which) + " absent"});

    const Result run = mac.driver("bg-key Notes cmd+shift+a");

    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(keySteps(mac), "") << which;
  }
}

TEST(keys, that_cannot_be_created_cost_no_wait) {
  TestMac mac(deskWith(""), {"quartz.create-keyboard-event 1+ absent"});
  EXPECT_EQ(mac.driver("bg-key Notes a").elapsed, 430'000);
}

TEST(keys, of_a_german_french_or_japanese_user_are_the_same_places_on_the_keyboard) {
  const std::pair<const char*, const char*> layouts[] = {
      {"us", "hellozq"}, {"german", "helloyq"}, {"french", "hellowa"}, {"japanese", "hellozq"}};
  for (const auto& [layout, text] : layouts) {
    TestMac mac(deskWith("    keyboard " + std::string(layout) + "\n"));
    mac.driver("bg-key Notes z");
    mac.driver("bg-key Notes q");
    EXPECT_EQ(keySteps(mac), "down 6, up 6, down 12, up 12");
    EXPECT_EQ(mac.valueOf("Notes", "Body"), text) << layout;
  }
}

TEST(key_commands, without_exactly_two_arguments_tell_how_they_are_used) {
  for (const char* line : {"bg-key", "bg-key Notes", "bg-key Notes a b", "bg-key Gone"}) {
    TestMac mac(deskWith(""));
    const Result run = mac.driver(line);
    EXPECT_EQ(seen(run), failure("usage: bg-key <app> <combo>")) << line;
    EXPECT_EQ(run.effects, "");
  }
  for (const char* line : {"bg-type", "bg-type Notes", "bg-type Notes a b", "bg-type Gone"}) {
    TestMac mac(deskWith(""));
    const Result run = mac.driver(line);
    EXPECT_EQ(seen(run), failure("usage: bg-type <app> <text>")) << line;
    EXPECT_EQ(run.effects, "");
  }
}

}  // namespace keys_events_test
