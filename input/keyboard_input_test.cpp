#include "input/keyboard_input.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

/// Notes has its keyboard in Inbox, in front or not.
std::string desk(const char* browser, const char* notes) {
  return std::string("    app Browser pid 40") + browser + "\n    app Notes pid 41" + notes + R"(
        window 7 "Inbox" at 100,80 size 300x300
        window 8 "Outbox" at 500,80 size 300x300
)";
}

const std::string behind = desk(" frontmost", "");
const std::string inFront = desk("", " frontmost");

bool mayGoOn(TestMac&& mac, platform::WindowNumber window) {
  return valueInside(mac, [&] { return KeyboardInput({41, window}).mayGoOn(); });
}

TEST(KeyboardInput, may_go_on_in_the_background_wherever_the_keyboard_is) {
  EXPECT_TRUE(mayGoOn(TestMac(behind), 7));
  EXPECT_TRUE(mayGoOn(TestMac(behind), 8));
}

TEST(KeyboardInput, may_go_on_in_front_where_the_keyboard_is_alone) {
  EXPECT_TRUE(mayGoOn(TestMac(inFront), 7));
  EXPECT_FALSE(mayGoOn(TestMac(inFront), 8));
}

TEST(KeyboardInput, may_not_go_on_in_front_where_the_keyboard_cannot_be_found) {
  EXPECT_FALSE(mayGoOn(TestMac(inFront, {"ax.attribute 1 error -25204"}), 7));
  EXPECT_FALSE(mayGoOn(TestMac(inFront, {"windowserver.windows 1 absent"}), 7));
}

TEST(KeyboardInput, goes_to_the_background_where_nobody_is_told_to_be_in_front) {
  EXPECT_TRUE(mayGoOn(TestMac(inFront, {"private.front-process 1 error -600"}), 8));
}

TEST(KeyboardInput, asks_no_application_behind_for_its_keyboard) {
  TestMac mac(behind);
  const Result run = runInside(mac, [] { KeyboardInput({41, 7}).requireKeyboard(); });
  EXPECT_EQ(run.calls, (std::vector<std::string>{"loader.open-library", "loader.find-symbol",
                                                 "loader.find-symbol", "private.front-process",
                                                 "private.process-pid"}));
}

TEST(KeyboardInput, throws_what_callers_read_when_it_may_not_go_on) {
  TestMac mac(inFront);
  const std::string message = valueInside(mac, []() -> std::string {
    try {
      KeyboardInput({41, 8}).requireKeyboard();
    } catch (const KeyboardTaken& taken) {
      return taken.message();
    }
    return "";
  });
  EXPECT_EQ(message,
            "the user's keyboard is in another window of the target app by now; the rest of the "
            "input was withheld");
}

TEST(KeyboardInput, counts_what_was_typed) {
  KeyboardInput input({41, 7});
  EXPECT_EQ(input.typed(), 0U);
  input.noteTyped(20);
  input.noteTyped(1);
  EXPECT_EQ(input.typed(), 21U);
}

}  // namespace
}  // namespace driver
