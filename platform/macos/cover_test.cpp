#include "platform/cover.h"

#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/images.h"
#include "platform/macos/standins/panels.h"

namespace {

class Cover : public standins::AdapterTest {};
using screens = Cover;
using measure = Cover;

using Panels = std::vector<std::string>;

cover::View viewOf(const std::string& text) {
  return {{100, 50}, 0.4, {}, {{text, {12, cover::Weight::semibold}, 0.7, {1, 2, 3, 4}}}};
}

const std::string panelText =
    "panel 5,6,100x50 level 9 style 128 spaces 273 on clear 0\n"
    "0,0,100x50 material 15 state 1 dark aqua\n"
    "  0,0,100x50 on black 0.4 resized 18";

}  // namespace

TEST_F(screens, have_their_frames_in_order) {
  standins::setScreens({{{0, 0}, {1440, 900}}, {{-10, 20}, {800, 600}}});
  EXPECT_EQ(cover::screens(),
            (std::vector<platform::Rect>{{0, 0, 1440, 900}, {-10, 20, 800, 600}}));
}

TEST_F(measure, is_the_size_of_a_label) {
  EXPECT_EQ(cover::measure("abc", {10, cover::Weight::medium}), (platform::Size{30, 10}));
}

TEST_F(Cover, has_panels_that_are_shown_changed_and_closed) {
  const std::size_t first = cover::show({{5, 6, 100, 50}, 9, viewOf("one")});
  const std::size_t second = cover::show({{5, 6, 100, 50}, 9, viewOf("two")});
  EXPECT_EQ(standins::shownPanels(),
            (Panels{panelText + "\n  1,2,3x4 \"one\" 12/0.3 white 0.7 aligned 1",
                    panelText + "\n  1,2,3x4 \"two\" 12/0.3 white 0.7 aligned 1"}));
  cover::setLabel(first, 0, "new", {4, 3, 2, 1});
  cover::close(second);
  EXPECT_EQ(standins::shownPanels(),
            (Panels{panelText + "\n  4,3,2x1 \"new\" 12/0.3 white 0.7 aligned 1"}));
  cover::close(first);
  EXPECT_EQ(standins::shownPanels(), Panels{});
}

TEST_F(Cover, has_pictures_that_are_scaled_and_clipped_to_a_circle) {
  const CGImageRef picture = standins::image("x");
  const image::Image image(
      std::shared_ptr<void>(const_cast<void*>(static_cast<const void*>(picture)),
                            [](void* reference) { CFRelease(reference); }));
  cover::View view = viewOf("one");
  view.labels.clear();
  view.pictures = {{image, {1, 2, 30, 30}, true}, {image, {3, 4, 30, 30}, false}};
  const std::size_t panel = cover::show({{5, 6, 100, 50}, 9, view});
  EXPECT_EQ(standins::shownPanels(),
            Panels{panelText + "\n  1,2,30x30 clipped to 15 border 2 white 0.85 image scaled 3" +
                   "\n  3,4,30x30 image scaled 3"});
  cover::close(panel);
}

TEST_F(Cover, hears_what_the_application_is_asked_for) {
  EXPECT_EQ(standins::askToTerminate(), std::nullopt);
  int changes = 0;
  int requests = 0;
  cover::onScreenChange([&] { ++changes; });
  standins::keepDelegateForEver();
  EXPECT_EQ(standins::askToTerminate(), true);
  standins::changeScreens();
  EXPECT_EQ(changes, 1);
  cover::onTerminationRequest([&] { ++requests; });
  EXPECT_EQ(standins::askToTerminate(), false);
  EXPECT_EQ(requests, 1);
  cover::runApplication();
  EXPECT_EQ(standins::takeCalls(), Calls{"run"});
}
