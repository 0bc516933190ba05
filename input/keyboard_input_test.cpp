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

/// Why an input for a window of Notes may not go on; empty when it may.
std::string objection(TestMac&& mac, platform::WindowNumber window, bool wasInFront = false) {
  return valueInside(mac, [&]() -> std::string {
    try {
      KeyboardInput({41, window}, wasInFront).requireKeyboard();
    } catch (const KeyboardTaken& taken) {
      return taken.message();
    }
    return "";
  });
}

constexpr const char* taken =
    "the user's keyboard is in another window of the target app by now; the rest of the input was "
    "withheld";
constexpr const char* left =
    "the target app is no longer in front; the rest of the input was withheld";

TEST(KeyboardInput, may_go_on_in_the_background_wherever_the_keyboard_is) {
  EXPECT_EQ(objection(TestMac(behind), 7), "");
  EXPECT_EQ(objection(TestMac(behind), 8), "");
}

TEST(KeyboardInput, may_go_on_in_front_where_the_keyboard_is_alone) {
  EXPECT_EQ(objection(TestMac(inFront), 7), "");
  EXPECT_EQ(objection(TestMac(inFront), 8), taken);
}

TEST(KeyboardInput, may_not_go_on_in_front_where_the_keyboard_cannot_be_found) {
  EXPECT_EQ(objection(TestMac(inFront, {"ax.attribute 1 error -25204"}), 7), taken);
  EXPECT_EQ(objection(TestMac(inFront, {"windowserver.windows 1 absent"}), 7), taken);
}

TEST(KeyboardInput, goes_to_the_background_where_nobody_is_told_to_be_in_front) {
  EXPECT_EQ(objection(TestMac(inFront, {"private.front-process 1 error -600"}), 8), "");
}

TEST(KeyboardInput, asks_no_application_behind_for_its_keyboard) {
  TestMac mac(behind);
  const Result run = runInside(mac, [] { KeyboardInput({41, 7}).requireKeyboard(); });
  EXPECT_EQ(run.calls, (std::vector<std::string>{"loader.open-library", "loader.find-symbol",
                                                 "loader.find-symbol", "private.front-process",
                                                 "private.process-pid"}));
}

TEST(KeyboardInput, that_began_in_front_may_not_go_on_behind) {
  EXPECT_EQ(objection(TestMac(behind), 7, true), left);
  EXPECT_EQ(objection(TestMac(inFront), 7, true), "");
  EXPECT_EQ(objection(TestMac(inFront), 8, true), taken);
}

TEST(KeyboardInput, that_began_in_front_goes_on_where_nobody_is_told_to_be_in_front) {
  EXPECT_EQ(objection(TestMac(behind, {"private.front-process 1 error -600"}), 7, true), "");
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
