#include "simulator/text/happenings.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"

namespace simulator {

namespace {

TEST(happening_text, every_happening_can_be_written) {
  const World world = parseWorld("app \"My Notes\" pid 41");
  struct Case {
    const char* text;
    std::string kind;
    Pid pid;
    const char* key;
    Point point;
  };
  const Case cases[] = {
      {"lock", "lock", 0, "", {}},
      {"unlock", "unlock", 0, "", {}},
      {"leave console", "leave console", 0, "", {}},
      {"return to console", "return to console", 0, "", {}},
      {"quit \"My Notes\"", "quit", 41, "", {}},
      {"quit pid:41", "quit", 41, "", {}},
      {"end process 900", "end process", 900, "", {}},
      {"front pid:41", "front", 41, "", {}},
      {"hang pid:41", "hang", 41, "", {}},
      {"recover pid:41", "recover", 41, "", {}},
      {"user key é", "user key", 0, "é", {}},
      {"user key \" \"", "user key", 0, " ", {}},
      {"user key return", "user key", 0, "return", {}},
      {"user click 10,20", "user click", 0, "", {10, 20}},
      {"  user move -1,2.5  # comment", "user move", 0, "", {-1, 2.5}},
      {"remove displays", "remove displays", 0, "", {}},
  };
  for (const Case& each : cases) {
    const Happening happening = parseHappening(each.text, world);
    EXPECT_EQ(happening.kind->phrase, each.kind) << each.text;
    EXPECT_EQ(happening.pid, each.pid) << each.text;
    EXPECT_EQ(happening.text, each.key) << each.text;
    EXPECT_EQ(happening.point, each.point) << each.text;
  }
}

TEST(happening_text, input_is_read_back_with_all_its_words) {
  const World world = parseWorld("app Notes pid 41");
  for (const char* text : {"user key a", "user key cmd shift v", "user key option return tagged",
                           "user key \" \" for pid:41", "user click 1,2 right",
                           "user click 1,2 other tagged for pid:41", "user move 1.5,-2 tagged",
                           "user scroll 0,-3", "user drag 1,2 to 3,4", "user drag 1,2 to 3,4 right",
                           "user press shift", "user release control for pid:41", "user copy hello",
                           "user copy \"two words\"", "disable taps", "disable taps timeout"}) {
    EXPECT_EQ(happeningText(parseHappening(text, world)), text);
  }
}

TEST(happening_text, names_applications_for_people) {
  const World world = parseWorld(
      "app \"My Notes\" pid 41\n"
      "app Mail pid 42\n"
      "app Mail pid 43\n"
      "app \"pid:41\" pid 44\n");
  const auto told = [&](const std::string& text) {
    return happeningText(parseHappening(text, world), &world);
  };

  EXPECT_EQ(told("quit pid:41"), "quit \"My Notes\"");
  EXPECT_EQ(told("user move 1,2 for pid:41"), "user move 1,2 for \"My Notes\"");
  EXPECT_EQ(told("in pid:42 hang; in pid:41 hang"), "in pid:42 hang; in \"My Notes\" hang");
  EXPECT_EQ(told("stop sharing pid:44 gone"), "stop sharing pid:44 gone");
}

TEST(happening_text, times_have_units) {
  EXPECT_EQ(parseTime("100ms", "at"), 100'000);
  EXPECT_EQ(parseTime("2s", "at"), 2'000'000);
  EXPECT_EQ(parseTime("1.5s", "at"), 1'500'000);
  EXPECT_EQ(parseTime("250us", "at"), 250);
  EXPECT_EQ(parseTime("0s", "at"), 0);
}

TEST(happening_text, a_bad_time_or_happening_is_an_error_of_line_one) {
  const World world = parseWorld(R"(
    app Twin pid 41
    app Twin pid 42
  )");
  const auto errorOfHappening = [&](const char* text) -> std::string {
    try {
      parseHappening(text, world);
    } catch (const WorldError& error) {
      return error.what();
    }
    return "no error";
  };
  const auto errorOfTime = [](const char* text) -> std::string {
    try {
      parseTime(text, "at");
    } catch (const WorldError& error) {
      return error.what();
    }
    return "no error";
  };

  const std::string kinds =
      "lock, unlock, leave, return, quit, end, front, hang, recover, in, user, remove, connect, "
      "disconnect, replug, signal, input, close, stall, resume, request, end-loop, stop, withdraw, "
      "silence, invalidate, disable";
  const std::string user = "key, click, move, scroll, drag, press, release, copy";
  const std::string key =
      "one character, or return, enter, tab, space, delete, backspace, forwarddelete, escape, "
      "home, "
      "end, pageup, pagedown, left, right, up or down";
  EXPECT_EQ(errorOfHappening(""), "line 1: something must happen: " + kinds);
  EXPECT_EQ(errorOfHappening("dance"), "line 1: unknown word 'dance'; expected " + kinds);
  EXPECT_EQ(errorOfHappening("\"lock\""), "line 1: unexpected \"lock\"; expected " + kinds);
  EXPECT_EQ(errorOfHappening("lock now"), "line 1: unexpected 'now' at the end of the line");
  EXPECT_EQ(errorOfHappening("lock\nlock"), "line 1: expected a single line");
  EXPECT_EQ(errorOfHappening("leave"), "line 1: 'leave' needs 'console' after it");
  EXPECT_EQ(errorOfHappening("return console"),
            "line 1: 'return' needs 'to' after it, not 'console'");
  EXPECT_EQ(errorOfHappening("quit"), "line 1: 'quit' needs an application's name or pid:N");
  EXPECT_EQ(errorOfHappening("quit Nobody"), "line 1: no application 'Nobody' is running");
  EXPECT_EQ(errorOfHappening("quit pid:7"), "line 1: no application 'pid:7' is running");
  EXPECT_EQ(errorOfHappening("quit pid:x"), "line 1: no application 'pid:x' is running");
  EXPECT_EQ(errorOfHappening("quit Twin"),
            "line 1: several applications are called 'Twin'; name one as pid:N");
  EXPECT_EQ(errorOfHappening("end process me"), "line 1: 'process' needs a process id, not 'me'");
  EXPECT_EQ(errorOfHappening("user"), "line 1: 'user' needs one of " + user);
  EXPECT_EQ(errorOfHappening("user sings"), "line 1: unknown word 'sings'; expected " + user);
  EXPECT_EQ(errorOfHappening("user key"), "line 1: 'key' needs " + key);
  EXPECT_EQ(errorOfHappening("user key ab"), "line 1: unknown key 'ab'; expected " + key);
  EXPECT_EQ(errorOfHappening("user press a"),
            "line 1: 'press' needs cmd, shift, option or control, not 'a'");
  EXPECT_EQ(errorOfHappening("user key a twice"),
            "line 1: unknown word 'twice'; expected tagged, for");
  EXPECT_EQ(errorOfHappening("user drag 1,1"), "line 1: 'drag' needs 'to' after it");
  EXPECT_EQ(errorOfHappening("disable"), "line 1: 'disable' needs 'taps' after it");
  EXPECT_EQ(errorOfHappening("user click 10"), "line 1: 'click' needs X,Y, not '10'");
  EXPECT_EQ(errorOfHappening("close"), "line 1: 'close' needs input or output");
  EXPECT_EQ(errorOfHappening("close it"), "line 1: unknown word 'it'; expected input, output");
  const std::string time = "line 1: 'at' needs a time such as 250us, 100ms or 1.5s, not ";
  EXPECT_EQ(errorOfTime("100"), time + "'100'");
  EXPECT_EQ(errorOfTime(""), time + "''");
  EXPECT_EQ(errorOfTime("s"), time + "'s'");
  EXPECT_EQ(errorOfTime("-1s"), time + "'-1s'");
  EXPECT_EQ(errorOfTime("nans"), time + "'nans'");
  EXPECT_EQ(errorOfTime("1e30s"), time + "'1e30s'");
}

}  // namespace

}  // namespace simulator
