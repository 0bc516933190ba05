#include "guard/cover_view.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using testing_support::Environment;
using testing_support::Mode;
using testing_support::TestMac;
using testing_support::valueInside;

std::string frameText(const platform::Rect& frame) {
  char text[100];
  std::snprintf(text, sizeof text, "%g,%g %gx%g", frame.x, frame.y, frame.width, frame.height);
  return text;
}

/// The view as text, one line for each thing on it.
std::string viewText(const cover::View& view) {
  char text[300];
  std::snprintf(text, sizeof text, "%gx%g dimmed %g\n", view.size.width, view.size.height,
                view.dimmingAlpha);
  std::string lines = text;
  for (const cover::Picture& picture : view.pictures) {
    lines += "picture " + frameText(picture.frame) + (picture.isRound ? " round\n" : "\n");
  }
  for (const cover::Label& label : view.labels) {
    std::snprintf(text, sizeof text, "%s size %g %s alpha %g: %s\n", frameText(label.frame).c_str(),
                  label.font.size,
                  label.font.weight == cover::Weight::semibold ? "semibold" : "medium", label.alpha,
                  label.text.c_str());
    lines += text;
  }
  return lines;
}

std::string screenText(const std::string& world, const platform::Size& size,
                       const Environment& environment = {}) {
  TestMac mac("link \"/driver\" to \"/Applications/Desk.app/Contents/MacOS/driver\"\n" + world, {},
              Mode::direct);
  return valueInside(
      mac,
      [&] {
        chooseGuardLanguage();
        lookUpCoverPictures();
        return viewText(privacyScreen(size));
      },
      environment);
}

constexpr const char* labels =
    "501,434 438x32 size 26 semibold alpha 0.92: Zentrove Desk is minding this Mac\n"
    "576.5,404 287x18 size 15 medium alpha 0.62: Press any key or move the mouse to lock\n"
    "591,40 258x15 size 12 medium alpha 0.4: Keeping an eye on things · Go enjoy yourself\n";

TEST(privacy_screen, shows_the_user_in_a_circle_with_the_icon_as_a_badge) {
  EXPECT_EQ(screenText("tool \"/usr/bin/dscl\" photo 600", {1440, 900}),
            std::string("1440x900 dimmed 0.55\n"
                        "picture 664,490 112x112 round\n"
                        "picture 736,482 48x48\n") +
                labels);
}

TEST(privacy_screen, shows_the_icon_in_the_circle_for_a_user_without_a_picture) {
  EXPECT_EQ(screenText("", {1440, 900}), std::string("1440x900 dimmed 0.55\n"
                                                     "picture 664,490 112x112 round\n") +
                                             labels);
}

TEST(privacy_screen, shows_no_picture_where_there_is_none) {
  TestMac mac("", {}, Mode::direct);
  EXPECT_EQ(valueInside(mac,
                        [] {
                          lookUpCoverPictures();
                          return viewText(privacyScreen({1440, 900}));
                        }),
            std::string("1440x900 dimmed 0.55\n") + labels);
}

TEST(privacy_screen, shows_the_user_without_a_badge_outside_a_bundle) {
  TestMac mac("tool \"/usr/bin/dscl\" photo 600", {}, Mode::direct);
  EXPECT_EQ(valueInside(mac,
                        [] {
                          lookUpCoverPictures();
                          return viewText(privacyScreen({1440, 900}));
                        }),
            std::string("1440x900 dimmed 0.55\n"
                        "picture 664,490 112x112 round\n") +
                labels);
}

TEST(privacy_screen, shows_the_personas_face_alone) {
  EXPECT_EQ(screenText("image \"/oru.png\"\ntool \"/usr/bin/dscl\" photo 600", {1440, 900},
                       {{"ZENTROVE_COVER_FACE", "/oru.png"},
                        {"ZENTROVE_COVER_NAME", "Mei"},
                        {"ZENTROVE_COVER_OPERATING", "1"}}),
            "1440x900 dimmed 0.55\n"
            "picture 646,482 148x148\n"
            "540,434 360x32 size 26 semibold alpha 0.92: Oru is using this Mac for Mei\n"
            "576.5,404 287x18 size 15 medium alpha 0.62: Press any key or move the mouse to lock\n"
            "591,40 258x15 size 12 medium alpha 0.4: Keeping an eye on things · Go enjoy "
            "yourself\n");
}

TEST(privacy_screen, asks_for_no_picture_when_there_is_a_face) {
  TestMac mac("image \"/oru.png\"", {}, Mode::direct);
  valueInside(mac,
              [] {
                lookUpCoverPictures();
                return true;
              },
              {{"ZENTROVE_COVER_FACE", "/oru.png"}});
  EXPECT_TRUE(testing_support::callsOf(mac, platform::Function::toolOutput).empty());
}

TEST(privacy_screen, is_laid_out_from_the_middle_of_its_screen) {
  EXPECT_EQ(screenText("", {801, 601}),
            "801x601 dimmed 0.55\n"
            "picture 344.5,340.5 112x112 round\n"
            "181.5,284.5 438x32 size 26 semibold alpha 0.92: Zentrove Desk is minding this Mac\n"
            "257,254.5 287x18 size 15 medium alpha 0.62: Press any key or move the mouse to lock\n"
            "271.5,40 258x15 size 12 medium alpha 0.4: Keeping an eye on things · Go enjoy "
            "yourself\n");
}

TEST(privacy_screen, begins_with_the_whole_grace) {
  const std::string view = screenText("", {1440, 900}, {{"ZENTROVE_COVER_GRACE", "2.2"}});
  EXPECT_NE(view.find("Press a key or click within 3 seconds to go back to Kelto"),
            std::string::npos)
      << view;
}

TEST(relabelled, keeps_its_height_and_its_middle) {
  TestMac mac("", {}, Mode::direct);
  EXPECT_EQ(
      valueInside(
          mac,
          [] {
            const cover::Label label = {
                "old", {26, cover::Weight::semibold}, 0.92, {10, 434, 20, 32}};
            cover::View view{
                {1440, 900}, 0, {}, {relabelled(label, "Zentrove Desk is minding this Mac", 1440)}};
            return viewText(view);
          }),
      "1440x900 dimmed 0\n"
      "501,434 438x32 size 26 semibold alpha 0.92: Zentrove Desk is minding this Mac\n");
}

}  // namespace
}  // namespace driver
