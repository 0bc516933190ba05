#include "platform/share.h"

#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/images.h"
#include "platform/macos/standins/sharing.h"

namespace {

using standins::LateAnswer;

constexpr std::uint64_t second = 1'000'000'000;

class Share : public standins::AdapterTest {
 protected:
  Share() {
    standins::setShareable(
        {{7, {{1, 2}, {3, 4}}, "title", 0, standins::SharedOwner{42, "com.a", "A"}},
         {8, {{5, 6}, {7, 8}}, std::nullopt, -20, std::nullopt}},
        {{5, {{0, 0}, {1440, 900}}}});
  }
  ~Share() override { standins::resetSharing(); }

  static share::Content shown() {
    share::Content content =
        share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
    standins::takeCalls();
    return content;
  }
};
using content = Share;
using screenshot = Share;

}  // namespace

TEST_F(content, describes_windows_and_displays) {
  const share::Content content =
      share::content(share::DesktopWindows::included, share::Shown::onScreen);
  EXPECT_EQ(standins::takeCalls(), (Calls{"content on screen"}));
  ASSERT_EQ(content.windows.size(), 2u);
  EXPECT_EQ(content.windows[0].number, 7u);
  EXPECT_EQ(content.windows[0].frame, (platform::Rect{1, 2, 3, 4}));
  EXPECT_EQ(content.windows[0].title, "title");
  EXPECT_EQ(content.windows[0].layer, 0);
  ASSERT_TRUE(content.windows[0].owner);
  EXPECT_EQ(content.windows[0].owner->pid, 42);
  EXPECT_EQ(content.windows[0].owner->bundleIdentifier, "com.a");
  EXPECT_EQ(content.windows[0].owner->name, "A");
  EXPECT_EQ(content.windows[1].number, 8u);
  EXPECT_EQ(content.windows[1].frame, (platform::Rect{5, 6, 7, 8}));
  EXPECT_EQ(content.windows[1].title, std::nullopt);
  EXPECT_EQ(content.windows[1].layer, -20);
  EXPECT_FALSE(content.windows[1].owner);
  ASSERT_EQ(content.displays.size(), 1u);
  EXPECT_EQ(content.displays[0].id, 5u);
  EXPECT_EQ(content.displays[0].frame, (platform::Rect{0, 0, 1440, 900}));
}

TEST_F(content, is_asked_for_as_told) {
  share::content(share::DesktopWindows::excluded, share::Shown::anywhere);
  EXPECT_EQ(standins::takeCalls(), (Calls{"content without desktop"}));
}

TEST_F(content, throws_the_systems_words) {
  standins::answerRequests({.error = "declined"});
  EXPECT_EQ(errorOf([] { shown(); }), "declined");
}

TEST_F(content, throws_when_there_is_neither_result_nor_error) {
  standins::answerRequests({.hasResult = false});
  EXPECT_EQ(errorOf([] { shown(); }), "the system gave no answer");
}

TEST_F(content, is_waited_for_ten_seconds_and_a_late_answer_goes_nowhere) {
  standins::answerRequests({.nanoseconds = 10 * second + 1});
  EXPECT_EQ(errorOf([] { shown(); }), "the system did not answer in time");
  EXPECT_TRUE(standins::letSystemDoNext());
  standins::answerRequests({.nanoseconds = 10 * second});
  EXPECT_EQ(errorOf([] { shown(); }), "");
}

TEST_F(content, that_never_comes_is_waited_for_ten_seconds) {
  standins::answerRequests({.nanoseconds = std::nullopt});
  EXPECT_EQ(errorOf([] { shown(); }), "the system did not answer in time");
  EXPECT_FALSE(standins::letSystemDoNext());
}

TEST_F(content, that_comes_just_when_the_wait_ends_is_taken) {
  standins::answerRequests({.nanoseconds = 11 * second});
  standins::setLateAnswer(LateAnswer::justTooLate);
  EXPECT_EQ(shown().windows.size(), 2u);
}

// Whoever is first, all are told the same, and nothing is left.
TEST_F(content, that_comes_while_the_wait_ends_is_taken_or_given_up) {
  standins::answerRequests({.nanoseconds = 11 * second});
  for (int i = 0; i < 200; ++i) {
    standins::setLateAnswer(LateAnswer::atTheSameTime);
    const std::string error = errorOf([] { EXPECT_EQ(shown().windows.size(), 2u); });
    EXPECT_TRUE(error.empty() || error == "the system did not answer in time") << error;
    standins::letSystemFinish();
  }
}

TEST_F(content, counts_the_first_of_two_answers) {
  standins::answerRequests({.secondError = "called again"});
  EXPECT_EQ(shown().windows.size(), 2u);
}

TEST_F(screenshot, of_a_window) {
  const share::Content content = shown();
  standins::setScreenshot(standins::image("pixels"));
  const image::Image image =
      share::screenshot(content, share::WindowFilter{8}, {.width = 9, .height = 7});
  EXPECT_EQ(standins::takeCalls(), (Calls{"screenshot of window 8: 9x7"}));
  EXPECT_EQ(standins::describe(image.get()), "image");
}

TEST_F(screenshot, of_a_part_of_a_display_with_some_windows) {
  const share::Content content = shown();
  standins::setScreenshot(standins::image("pixels"));
  share::screenshot(
      content, share::IncludingFilter{5, {8, 7}},
      {.width = 9, .height = 7, .source = platform::Rect{1, 2, 3, 4}, .backgroundGrey = 0.5});
  EXPECT_EQ(standins::takeCalls(),
            (Calls{"screenshot of display 5 with 8 7: 9x7 of 1,2,3x4 grey 0.5/1"}));
}

TEST_F(screenshot, of_a_whole_display) {
  const share::Content content = shown();
  standins::setScreenshot(standins::image("pixels"));
  share::screenshot(content, share::DisplayFilter{5}, {.width = 9, .height = 7});
  EXPECT_EQ(standins::takeCalls(), (Calls{"screenshot of display 5 without: 9x7"}));
}

TEST_F(screenshot, throws_for_what_the_content_does_not_hold) {
  const share::Content content = shown();
  EXPECT_EQ(errorOf([&] { share::screenshot(content, share::WindowFilter{9}, {}); }),
            "the window is not shareable");
  EXPECT_EQ(errorOf([&] {
              share::screenshot(content, share::IncludingFilter{5, {7, 9}}, {});
            }),
            "the window is not shareable");
  EXPECT_EQ(errorOf([&] { share::screenshot(content, share::DisplayFilter{6}, {}); }),
            "the display is not shareable");
}

TEST_F(screenshot, throws_when_the_system_gives_none) {
  const share::Content content = shown();
  standins::answerRequests({.error = "no picture"});
  EXPECT_EQ(errorOf([&] { share::screenshot(content, share::WindowFilter{7}, {}); }), "no picture");
  standins::answerRequests({.hasResult = false});
  EXPECT_EQ(errorOf([&] { share::screenshot(content, share::WindowFilter{7}, {}); }),
            "the system gave no answer");
}

TEST_F(screenshot, that_comes_late_is_released) {
  const share::Content content = shown();
  standins::setScreenshot(standins::image("pixels"));
  standins::answerRequests({.nanoseconds = 11 * second});
  EXPECT_EQ(errorOf([&] { share::screenshot(content, share::WindowFilter{7}, {}); }),
            "the system did not answer in time");
  EXPECT_TRUE(standins::letSystemDoNext());
}
