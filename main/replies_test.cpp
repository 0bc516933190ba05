#include "main/replies.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

constexpr const char* repliesDesk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
)";

constexpr const char* withheld =
    "1 {\"error\":\"the screen locked; input was withheld from the lock screen\","
    "\"locked\":true,\"ok\":false}\n";

std::string seenOfEmit(const Reply& reply) {
  TestMac mac(repliesDesk);
  return seen(runInside(mac, [&] { emit(reply); }));
}

std::string seenOfEmitAfterWithholding(const Reply& reply) {
  TestMac mac(repliesDesk);
  return seen(runInside(mac, [&] {
    globals().droppedWhileLocked = true;
    emit(reply);
  }));
}

TEST(emit, writes_one_line_with_sorted_keys) {
  EXPECT_EQ(
      seenOfEmit(
          {{"z", 1}, {"ok", true}, {"a", Value::List{"x", Value::Object{{"d", 1}, {"c", 2}}}}}),
      "0 {\"a\":[\"x\",{\"c\":2,\"d\":1}],\"ok\":true,\"z\":1}\n");
}

TEST(emit, escapes_the_slashes_of_a_path) {
  EXPECT_EQ(seenOfEmit({{"ok", true}, {"path", "/tmp/a.png"}}),
            "0 {\"ok\":true,\"path\":\"\\/tmp\\/a.png\"}\n");
}

TEST(emit, keeps_a_text_with_line_feeds_on_one_line) {
  EXPECT_EQ(seenOfEmit({{"ok", true}, {"text", "a\nb\r"}}),
            "0 {\"ok\":true,\"text\":\"a\\nb\\r\"}\n");
}

TEST(emit, repairs_ill_formed_texts_wherever_they_are) {
  EXPECT_EQ(seenOfEmit({{"ok", true},
                        {"k", "a\xC3"},
                        {"list", Value::List{"\xED\xA0\x80", Value::Object{{"in", "\x80"}}}}}),
            "0 {\"k\":\"a\uFFFD\",\"list\":[\"\uFFFD\uFFFD\uFFFD\",{\"in\":\"\uFFFD\"}],"
            "\"ok\":true}\n");
}

TEST(emit, writes_the_line_and_its_end_one_after_the_other) {
  TestMac mac(repliesDesk);
  runInside(mac, [] { emit({{"ok", true}}); });
  EXPECT_EQ(callsOf(mac, Function::writeOutput),
            (std::vector<std::string>{"streams.write-output \"{\"ok\":true}\" true -> true",
                                      "streams.write-output \".\" true -> true"}));
}

TEST(emit, does_not_end_a_line_that_could_not_be_written) {
  TestMac mac(repliesDesk, {"streams.write-output 1 refused"});
  EXPECT_EQ(seen(runInside(mac, [] { emit({{"ok", true}}); })), "0 ");
  EXPECT_EQ(callsOf(mac, Function::writeOutput).size(), 1U);
}

TEST(emit, may_be_called_again) {
  TestMac mac(repliesDesk);
  EXPECT_EQ(seen(runInside(mac,
                           [] {
                             emit({{"ok", true}});
                             emit({{"ok", false}, {"error", "relocked"}});
                           })),
            "0 {\"ok\":true}\n{\"error\":\"relocked\",\"ok\":false}\n");
}

TEST(emit, turns_a_success_into_a_refusal_when_input_was_withheld) {
  EXPECT_EQ(seenOfEmitAfterWithholding({{"ok", true}, {"sent", 3}}), withheld);
}

TEST(emit, leaves_a_failure_alone_when_input_was_withheld) {
  EXPECT_EQ(seenOfEmitAfterWithholding({{"ok", false}, {"error", "gone"}}),
            "0 {\"error\":\"gone\",\"ok\":false}\n");
}

TEST(emit, leaves_what_does_not_say_ok_alone_when_input_was_withheld) {
  EXPECT_EQ(seenOfEmitAfterWithholding({{"event", "key"}}), "0 {\"event\":\"key\"}\n");
  EXPECT_EQ(seenOfEmitAfterWithholding({{"ok", 1}}), "0 {\"ok\":1}\n");
  EXPECT_EQ(seenOfEmitAfterWithholding({{"ok", "true"}}), "0 {\"ok\":\"true\"}\n");
}

TEST(fail, writes_the_message_and_ends_with_status_1) {
  TestMac mac(repliesDesk);
  const Result run = runInside(mac, [] {
    fail("x");
    emit({{"ok", true}});
  });
  EXPECT_EQ(seen(run), failure("x"));
}

TEST(fail, writes_its_own_message_when_input_was_withheld) {
  TestMac mac(repliesDesk);
  EXPECT_EQ(seen(runInside(mac,
                           [] {
                             globals().droppedWhileLocked = true;
                             fail("x");
                           })),
            failure("x"));
}

TEST(fail, takes_any_message) {
  TestMac mac(repliesDesk);
  EXPECT_EQ(seen(runInside(mac, [] { fail(""); })), failure(""));
  EXPECT_EQ(seen(runInside(mac, [] { fail("a \"b\" \\ /c\n\xFF"); })), failure(R"(a \"b\" \\ \/c\n)"
                                                                               "\uFFFD"));
}

TEST(fail, ends_with_status_1_also_when_nothing_can_be_written) {
  TestMac mac(repliesDesk, {"streams.write-output 1+ refused"});
  EXPECT_EQ(seen(runInside(mac, [] { fail("x"); })), "1 ");
}

TEST(InputFailure, has_a_message_and_a_description) {
  const InputFailure failure("no \"field\"");
  EXPECT_EQ(failure.message(), "no \"field\"");
  EXPECT_STREQ(failure.what(), "InputFailure(message: \"no \"field\"\")");
}

TEST(refusal, says_what_went_wrong) {
  EXPECT_EQ(refusal("gone"), (Reply{{"ok", false}, {"error", "gone"}}));
  EXPECT_EQ(lockedRefusal("gone"), (Reply{{"ok", false}, {"locked", true}, {"error", "gone"}}));
}

}  // namespace
}  // namespace driver
