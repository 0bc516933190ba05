#include <gtest/gtest.h>

#include <random>

#include "simulator/rules/pace.h"
#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// What "bg-type" posts, and what arrives of it.
namespace typing_text_test {

using namespace testing_support;

std::string deskWith(const std::string& more) {
  return R"(
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        menu Edit > "Select All" cmd a press: set Body "all"
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400
    app Chat pid 42 bundle com.example.chat
        window 9 "Chat" at 1000,300 size 250x150
            AXTextArea "Message" at 1010,310 size 140x20 submit: set Sent "sent"
            AXStaticText "Sent" at 1010,350 size 140x20
)" + more;
}

const std::string typed = success(R"({"ok":true,"pid":41,"via":"background","window":7})");

/// The time of a run without any event.
constexpr std::int64_t frame = 430'000;
constexpr std::int64_t pair = 2 * simulator::waitAfterPost;  // a press and its release
constexpr std::int64_t lineBreak = 4 * simulator::waitAfterPost + 50'000;  // with shift

/// What is in the body once the text has been typed.
std::string arrived(const std::string& text) {
  TestMac mac(deskWith(""));
  EXPECT_EQ(seen(mac.driverWith({"bg-type", "Notes", text})), typed);
  return mac.valueOf("Notes", "Body");
}

TEST(a_text, of_45_characters_is_posted_as_three_pieces) {
  TestMac mac(deskWith(""));

  const Result run =
      mac.driverWith({"bg-type", "Notes", "The quick brown fox jumps over the lazy dogs."});

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(postedKeys(mac),
            R"(  340 ms public to 41: down 0 "The quick brown fox " flags 0x0 42=1515475542
  352 ms public to 41: up 0 "The quick brown fox " flags 0x0 42=1515475542
  364 ms public to 41: down 0 "jumps over the lazy " flags 0x0 42=1515475542
  376 ms public to 41: up 0 "jumps over the lazy " flags 0x0 42=1515475542
  388 ms public to 41: down 0 "dogs." flags 0x0 42=1515475542
  400 ms public to 41: up 0 "dogs." flags 0x0 42=1515475542
)");
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  340 ms  post 41/7 key-down 0 "The quick brown fox " public: typed "The quick brown fox " into AXTextArea "Body"
  352 ms  post 41/7 key-up 0 "The quick brown fox " public
  364 ms  post 41/7 key-down 0 "jumps over the lazy " public: typed "jumps over the lazy " into AXTextArea "Body"
  376 ms  post 41/7 key-up 0 "jumps over the lazy " public
  388 ms  post 41/7 key-down 0 "dogs." public: typed "dogs." into AXTextArea "Body"
  400 ms  post 41/7 key-up 0 "dogs." public
  462 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, frame + 3 * pair);
}

TEST(a_text, of_twenty_units_is_one_piece_and_of_one_more_two) {
  const std::string twenty(20, 'x');
  TestMac one(deskWith(""));
  TestMac two(deskWith(""));
  EXPECT_EQ(one.driverWith({"bg-type", "Notes", twenty}).elapsed, frame + pair);
  EXPECT_EQ(two.driverWith({"bg-type", "Notes", twenty + "y"}).elapsed, frame + 2 * pair);
  EXPECT_EQ(two.valueOf("Notes", "Body"), twenty + "y");
}

TEST(a_text, has_no_emoji_in_two_pieces) {
  TestMac mac(deskWith(""));

  mac.driverWith({"bg-type", "Notes", "1234567890123456789\U0001F600!"});

  EXPECT_EQ(postedKeys(mac),
            R"(  340 ms public to 41: down 0 "1234567890123456789" flags 0x0 42=1515475542
  352 ms public to 41: up 0 "1234567890123456789" flags 0x0 42=1515475542
  364 ms public to 41: down 0 "😀!" flags 0x0 42=1515475542
  376 ms public to 41: up 0 "😀!" flags 0x0 42=1515475542
)");
}

TEST(a_text, keeps_what_the_user_sees_as_one_character_together) {
  const char* characters[] = {
      "\U0001F468\u200D\U0001F469\u200D\U0001F467",  // a family: 8 units
      "e\u0301",                                     // a letter and its accent
      "\U0001F1E9\U0001F1EA",                        // a flag
      "\u0928\u093F",                                // a Devanagari syllable
  };
  for (const std::string character : characters) {
    for (std::size_t before = 0; before <= 21; ++before) {
      const std::string text = std::string(before, 'x') + character + "y";
      EXPECT_EQ(arrived(text), text) << before;
    }
  }
}

TEST(a_text, has_a_character_longer_than_a_piece_whole_and_alone) {
  std::string tall = "a";
  for (int i = 0; i < 30; ++i) tall += "\u0301";
  TestMac mac(deskWith(""));

  const Result run = mac.driverWith({"bg-type", "Notes", "x" + tall + "y"});

  EXPECT_EQ(run.elapsed, frame + 3 * pair);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "x" + tall + "y");
}

TEST(a_text, breaks_lines_softly) {
  TestMac mac(deskWith(""));

  const Result run = mac.driverWith({"bg-type", "Notes", "a\r\nb"});

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(postedKeys(mac), R"(  340 ms public to 41: down 0 "a" flags 0x0 42=1515475542
  352 ms public to 41: up 0 "a" flags 0x0 42=1515475542
  364 ms public to 41: down 56 flags 0x20000 42=1515475542
  376 ms public to 41: down 36 flags 0x20000 42=1515475542
  388 ms public to 41: up 36 flags 0x20000 42=1515475542
  400 ms public to 41: up 56 flags 0x20000 42=1515475542
  462 ms public to 41: down 0 "b" flags 0x0 42=1515475542
  474 ms public to 41: up 0 "b" flags 0x0 42=1515475542
)");
  EXPECT_EQ(waits(mac),
            "40000 300000 12000 12000 12000 12000 12000 12000 50000 12000 12000 50000 40000");
  EXPECT_EQ(run.elapsed, frame + 2 * pair + lineBreak);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "a\nb");
}

TEST(a_text, of_several_lines_submits_nothing_in_between) {
  TestMac mac(deskWith(""));

  mac.driverWith({"bg-type", "Chat", "one\ntwo\n"});

  EXPECT_EQ(mac.valueOf("Chat", "Message"), "one\ntwo\n");
  EXPECT_EQ(mac.valueOf("Chat", "Sent"), "");
}

TEST(a_text, has_one_break_less_than_lines_empty_ones_included) {
  struct Case {
    const char* text;
    const char* arrives;
    int breaks;
    int pieces;
  };
  const Case cases[] = {
      {"", "", 0, 0},
      {"\n", "\n", 1, 0},
      {"\r\n", "\n", 1, 0},
      {"\n\n", "\n\n", 2, 0},
      {"a\n", "a\n", 1, 1},
      {"\na", "\na", 1, 1},
      {"a\n\nb", "a\n\nb", 2, 2},
      {"a\r\n\r\nb", "a\n\nb", 2, 2},
      {"a\n\r\nb", "a\n\nb", 2, 2},
  };
  for (const Case& each : cases) {
    TestMac mac(deskWith(""));
    const Result run = mac.driverWith({"bg-type", "Notes", each.text});
    EXPECT_EQ(seen(run), typed);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), each.arrives);
    EXPECT_EQ(run.elapsed, frame + each.breaks * lineBreak + each.pieces * pair) << each.arrives;
  }
}

TEST(a_text, keeps_a_carriage_return_that_no_line_feed_follows) {
  EXPECT_EQ(arrived("a\rb"), "a\rb");
  EXPECT_EQ(arrived("a\r\r\nb"), "a\r\nb");
  EXPECT_EQ(arrived("a\n\rb"), "a\n\rb");
}

TEST(a_text, starts_a_new_piece_in_each_line) {
  TestMac mac(deskWith(""));
  mac.driverWith({"bg-type", "Notes", "12345\n1234567890123456789\n1"});
  EXPECT_EQ(keySteps(mac),
            "down 0, up 0, down 56, down 36, up 36, up 56, "
            "down 0, up 0, down 56, down 36, up 36, up 56, down 0, up 0");
}

TEST(a_text, that_is_empty_posts_nothing) {
  TestMac mac(deskWith(""));

  const Result run = mac.driverWith({"bg-type", "Notes", ""});

  EXPECT_EQ(seen(run), typed);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  key 41/7 first
   40 ms  key 41/7 second
  390 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, frame);
}

TEST(a_text, is_no_combination_and_presses_no_menu_item) {
  for (const char* text : {"cmd+a", "shift+return", "f13", "+", "tab"}) {
    EXPECT_EQ(arrived(text), text);
  }
}

TEST(a_text, does_not_depend_on_the_users_keyboard) {
  const std::string text =
      "Zwölf Boxkämpfer jagen Élan, y@z: \u65E5\u672C\u8A9E \U0001F600\n{[|~]}";
  for (const char* layout : {"us", "german", "french", "japanese"}) {
    TestMac mac(deskWith("    keyboard " + std::string(layout) + "\n"));
    EXPECT_EQ(seen(mac.driverWith({"bg-type", "Notes", text})), typed);
    EXPECT_EQ(mac.valueOf("Notes", "Body"), text) << layout;
  }
}

TEST(a_text, does_not_carry_the_modifiers_that_the_user_holds) {
  TestMac mac(deskWith("    at 100ms user press shift\n    at 345ms user press cmd\n"));
  mac.driverWith({"bg-type", "Notes", "a long text of several pieces"});
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "a long text of several pieces");
}

TEST(a_text, that_is_ill_formed_is_repaired_first) {
  EXPECT_EQ(arrived("a\xFF\xFE"
                    "b"),
            "a\uFFFD\uFFFDb");
  EXPECT_EQ(arrived("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
}

TEST(a_text, of_any_characters_arrives_unchanged) {
  const char* alphabet[] = {"a",          "\u00DF",     "e\u0301", "\u65E5",
                            "\U0001F600", "\u200D",     "\u0301",  "\U0001F1E9",
                            "\n",         "\U0001F3FD", " ",       "\u0928\u093F"};
  std::mt19937 random(7);
  for (int round = 0; round < 200; ++round) {
    std::string text;
    for (auto length = random() % 60; length > 0; --length) {
      text += alphabet[random() % std::size(alphabet)];
    }
    ASSERT_EQ(arrived(text), text);
  }
}

TEST(a_text, of_which_an_event_cannot_be_created_goes_on_with_the_next) {
  for (const char* which : {"1", "2"}) {
    TestMac mac(deskWith(""), {"quartz.create-keyboard-event " + std::string(which) + " absent"});
    mac.driverWith({"bg-type", "Notes", "12345678901234567890abc"});
    EXPECT_EQ(keySteps(mac), "down 0, up 0");
    EXPECT_EQ(mac.valueOf("Notes", "Body"), "abc");
  }
}

TEST(a_text, of_the_application_in_front_goes_where_the_user_types) {
  TestMac mac(deskWith(""));

  const Result run = mac.driverWith({"bg-type", "Browser", "one"});

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":40,"via":"background","window":5})"));
  EXPECT_EQ(run.effects,
            R"(    0 ms  post 40/5 key-down 0 "one" public: typed "one" into AXTextField "Address"
   12 ms  post 40/5 key-up 0 "one" public
)");
  EXPECT_EQ(run.elapsed, pair);
}

}  // namespace typing_text_test
