#include "simulator/world/cover.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "simulator/desktop.h"
#include "simulator/drawing/covers.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"
#include "simulator/text/happenings.h"
#include "simulator/text/parse.h"

namespace simulator {
namespace {

using driver::Rect;

TEST(screens_space, is_the_global_one_upside_down) {
  const Rect first{0, 0, 1440, 900};
  EXPECT_EQ(flipped(first, first), first);
  EXPECT_EQ(flipped({1440, -180, 1920, 1080}, first), (Rect{1440, 0, 1920, 1080}));
  EXPECT_EQ(flipped({-1024, 900, 1024, 768}, first), (Rect{-1024, -768, 1024, 768}));
  const Rect some{10, 20, 30, 40};
  EXPECT_EQ(flipped(flipped(some, first), first), some);
}

TEST(picture_data, begins_like_a_format_that_is_known) {
  EXPECT_TRUE(isPictureData("\xFF\xD8\xFF\xE0 and more"));
  EXPECT_TRUE(isPictureData("\x89PNG\r\n\x1A\n"));
  EXPECT_FALSE(isPictureData("hello"));
  EXPECT_FALSE(isPictureData(""));
}

TEST(labels, are_as_wide_as_their_text_and_a_margin) {
  const auto medium = labelSize("Press any key", {15, cover::Weight::medium});
  const auto large = labelSize("Press any key", {30, cover::Weight::medium});
  EXPECT_EQ(medium.height, 18);
  EXPECT_EQ(large.height, 36);
  EXPECT_NEAR(large.width - 4, 2 * (medium.width - 4), 2);
  EXPECT_EQ(labelSize("", {15, cover::Weight::medium}), (driver::Size{4, 18}));
}

World coveredWorld() {
  World world =
      parseWorld("display 1 300x200\napp Notes pid 41 frontmost\n    window 7 at 0,0 size 300x200");
  Cover cover;
  cover.owner = 5'000'000;
  cover.frame = {0, 0, 300, 200};
  cover.dimmingAlpha = 0.5;
  cover.labels = {{"Hello", {20, cover::Weight::semibold}, 0.9, {100, 90, 100, 24}}};
  world.covers.push_back(cover);
  return world;
}

// Whatever changes on a cover changes the picture, and its digest with it.
TEST(covers, make_another_picture_with_each_thing_on_them) {
  const World world = coveredWorld();
  const auto differs = [&](const std::function<void(World&)>& change) {
    World changed = world;
    change(changed);
    const Picture before = screenPicture(world);
    const Picture after = screenPicture(changed);
    return digest(before) != digest(after) && drawPng(before) != drawPng(after);
  };
  EXPECT_TRUE(differs([](World& w) { w.covers.clear(); }));
  EXPECT_TRUE(differs([](World& w) { w.covers[0].frame.width = 200; }));
  EXPECT_TRUE(differs([](World& w) { w.covers[0].dimmingAlpha = 0.2; }));
  EXPECT_TRUE(differs([](World& w) { w.covers[0].labels[0].text = "Bye"; }));
  EXPECT_TRUE(differs([](World& w) { w.covers[0].labels[0].alpha = 0.2; }));
  EXPECT_TRUE(differs([](World& w) { w.covers[0].labels[0].frame.y = 20; }));
  EXPECT_TRUE(differs([](World& w) {
    w.covers[0].pictures.push_back({{Portrait::Kind::icon, "/A.app"}, {20, 20, 48, 48}, false});
  }));
  EXPECT_TRUE(differs([](World& w) { w.session.locked = true; }));
}

TEST(covers, of_every_kind_of_portrait_can_be_drawn) {
  World world = coveredWorld();
  std::set<std::string> pictures;
  for (const auto kind : {Portrait::Kind::face, Portrait::Kind::photo, Portrait::Kind::icon}) {
    for (const bool isRound : {false, true}) {
      world.covers[0].pictures = {{{kind, "/some/name"}, {90, 60, 100, 100}, isRound}};
      pictures.insert(drawPng(screenPicture(world)).value_or(""));
    }
  }
  EXPECT_EQ(pictures.size(), 6U);
}

TEST(displays, can_be_connected_and_disconnected_by_a_text_that_comes_back) {
  World world = parseWorld("display 1 1440x900");
  for (const char* text :
       {"connect display 2 800x600 at 1440,-10 scale 2",
        "connect display 2 1024x768 at 0,900 scale 1 mode unreadable", "disconnect display 2"}) {
    const Happening happening = parseHappening(text, world);
    EXPECT_EQ(happeningText(happening), text);
  }
  EXPECT_EQ(parseHappening("connect display 3 10x10", world).display.scale, 1);
  for (const char* wrong : {"connect", "connect display", "connect display 0 1x1",
                            "connect display 2 0x5", "disconnect display", "disconnect 2"}) {
    EXPECT_THROW(parseHappening(wrong, world), WorldError) << wrong;
  }
}

TEST(displays, that_are_connected_again_change) {
  World world = parseWorld(
      "display 1 1440x900\nat 1s connect display 1 800x600\n"
      "at 2s connect display 5 640x480 at 800,0\nat 3s disconnect display 1");
  Desktop desktop(std::move(world));
  desktop.advanceTo(1'000'000);
  ASSERT_EQ(desktop.mac().world.displays.size(), 1U);
  EXPECT_EQ(desktop.mac().world.displays[0].frame, (Rect{0, 0, 800, 600}));
  desktop.advanceTo(2'000'000);
  EXPECT_EQ(desktop.mac().world.displays.size(), 2U);
  desktop.advanceTo(3'000'000);
  ASSERT_EQ(desktop.mac().world.displays.size(), 1U);
  EXPECT_EQ(desktop.mac().world.displays[0].id, 5U);
}

}  // namespace
}  // namespace simulator
