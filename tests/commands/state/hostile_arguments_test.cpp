#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// Arguments as nobody should write them: one clear line each, and nothing done.
namespace driver {
namespace hostile_arguments_test {

using namespace testing_support;

constexpr const char* desk = R"(
    app Browser pid 40 bundle com.example.browser chromium frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20
)";

constexpr std::size_t megabyte = 1U << 20U;

/// The whole of a run that must have done nothing.
std::string seenOf(const std::vector<std::string>& arguments) {
  TestMac mac(desk);
  const Result run = mac.driverWith(arguments);
  EXPECT_EQ(run.effects, "");
  EXPECT_EQ(run.elapsed, 0);
  return seen(run);
}

TEST(coordinates, must_be_numbers_as_a_whole) {
  for (const char* text : {"12px", "", " ", " 12", "12 ", "\t12", "12\n", "1,5", "--1", "1e", "0x",
                           "abc", "\xFF", "\u0661\u0662"}) {
    for (const char* command : {"bg-click", "bg-move"}) {
      EXPECT_EQ(seenOf({command, "Notes", text, "95"}), failure("missing numeric arg 3"))
          << command << " '" << text << "'";
      EXPECT_EQ(seenOf({command, "Notes", "130", text}), failure("missing numeric arg 4"))
          << command << " '" << text << "'";
    }
  }
}

TEST(coordinates, are_read_from_the_left) {
  EXPECT_EQ(seenOf({"bg-click", "Notes", "x", "y"}), failure("missing numeric arg 3"));
}

TEST(coordinates, are_read_before_the_application_is_looked_up) {
  EXPECT_EQ(seenOf({"bg-click", "Nobody", "x", "95"}), failure("missing numeric arg 3"));
}

TEST(coordinates, that_lie_in_no_window_hit_none) {
  for (const char* number : {"nan", "-nan", "inf", "-inf", "1e308", "-1e308", "1e400", "-5", "-0",
                             "100000", "0x7fffffff"}) {
    for (const auto& [x, y] : {std::pair{number, "95"}, std::pair{"130", number}}) {
      const std::string output = seenOf({"bg-click", "Notes", x, y});
      EXPECT_EQ(output, "0 {\"error\":\"no window of the app under the point\",\"ok\":false}\n")
          << x << "," << y;
    }
  }
}

TEST(coordinates, may_be_written_in_any_notation) {
  TestMac mac(desk);
  for (const char* x : {"130", "+130", "130.0", "1.3e2", "0x82", "0130"}) {
    const Result run = mac.driverWith({"bg-move", "Notes", x, "95"});
    EXPECT_EQ(run.status, 0) << x;
    EXPECT_NE(run.effects.find("moved 130,95"), std::string::npos) << x << "\n" << run.effects;
  }
}

TEST(commands, that_are_overlong_are_refused_whole) {
  const std::string name(megabyte, 'x');
  EXPECT_EQ(seenOf({name}), failure("unknown command: " + name));
}

TEST(commands, that_are_no_utf8_are_refused_in_repaired_form) {
  EXPECT_EQ(seenOf({"sc\xFF"
                    "ene"}),
            failure("unknown command: sc\uFFFDene"));
  EXPECT_EQ(seenOf({"\xC3"}), failure("unknown command: \uFFFD"));
  EXPECT_EQ(seenOf({"\xED\xA0\x80"}), failure("unknown command: \uFFFD\uFFFD\uFFFD"));
}

TEST(commands, with_control_characters_stay_on_one_line) {
  EXPECT_EQ(seenOf({"a\nb\x01\"\\/"}), failure(R"(unknown command: a\nb\u0001\"\\\/)"));
}

TEST(applications, with_overlong_names_are_not_running) {
  const std::string name(megabyte, 'x');
  EXPECT_EQ(seenOf({"windows", name}), success(R"({"ok":true,"running":false,"windows":[]})"));
  EXPECT_EQ(seenOf({"windows", "pid:" + std::string(megabyte, '9')}),
            success(R"({"ok":true,"running":false,"windows":[]})"));
  EXPECT_EQ(seenOf({"bg-click", name, "130", "95"}),
            "0 {\"error\":\"target app is not running or is hidden\",\"ok\":false}\n");
}

TEST(applications, with_names_that_are_no_utf8_are_not_running) {
  EXPECT_EQ(seenOf({"windows", "Notes\xFF"}),
            success(R"({"ok":true,"running":false,"windows":[]})"));
  EXPECT_EQ(seenOf({"windows", "\xF0\x9F\x98"}),
            success(R"({"ok":true,"running":false,"windows":[]})"));
}

TEST(numbers, that_are_overlong_are_too_large) {
  const std::string digits(megabyte, '9');
  EXPECT_EQ(seenOf({"focus-release", digits, "7"}), failure("invalid focus release"));
  EXPECT_EQ(seenOf({"focus-release", "41", digits}), failure("invalid focus release"));
  EXPECT_EQ(seenOf({"bg-click", "Notes", digits, "95"}),
            "0 {\"error\":\"no window of the app under the point\",\"ok\":false}\n");
  EXPECT_EQ(seenOf({"bg-click", "Notes", digits + "x", "95"}), failure("missing numeric arg 3"));
}

TEST(arguments_beyond_those_read, may_be_anything) {
  std::vector<std::string> words = {"session"};
  words.resize(10'000, "\xFF");
  EXPECT_EQ(seenOf(words), success(R"({"locked":false,"ok":true,"onConsole":true})"));
  EXPECT_EQ(seenOf({"scene", std::string(megabyte, 'x')}),
            success(R"({"bundleId":"com.example.browser","ok":true,"pid":40,"x":0,"y":0})"));
}

TEST(environment, may_be_anything) {
  TestMac mac(desk);
  const std::string overlong(megabyte, 'x');
  const Environment environment = {
      {"CU_WINDOW", overlong + "\xFF"},  {"ZENTROVE_COVER_GRACE", overlong},
      {"ZENTROVE_COVER_FACE", overlong}, {"ZENTROVE_COVER_NAME", overlong + "\xFF"},
      {"CU_CAPTURE_PID", overlong},      {"CU_FOCUS_PID", overlong}};
  EXPECT_EQ(seen(mac.driver("windows pid:41", environment)),
            success(R"({"active":false,"bundleId":"com.example.notes","name":"Notes","ok":true,)"
                    R"("pid":41,"running":true,"windows":[]})"));
}

}  // namespace hostile_arguments_test
}  // namespace driver
