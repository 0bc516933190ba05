#include "guard/cover_view.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "guard/cover_pictures.h"
#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using testing_support::Environment;
using testing_support::Mode;
using testing_support::TestMac;
using testing_support::valueInside;

using Texts = std::vector<std::string>;

/// Both titles, the hint of three seconds, the hint without grace, and the footer.
Texts texts(std::string_view world, const Environment& environment = {}) {
  TestMac mac(world, {}, Mode::direct);
  return valueInside(
      mac,
      [] {
        chooseGuardLanguage();
        return Texts{guardTitle(true), guardTitle(false), guardHint(3, false), guardHint(0, true),
                     guardFooter()};
      },
      environment);
}

const Texts english = {
    "Zentrove Desk is using this Mac for you", "Zentrove Desk is minding this Mac",
    "Press a key or click within 3 seconds to go back to Kelto",
    "Press any key or move the mouse to lock", "Keeping an eye on things · Go enjoy yourself"};
const Texts chinese = {"Zentrove Desk 正在替你用这台 Mac", "Zentrove Desk 在替你看着这台 Mac",
                       "3 秒内按键或点一下，回到 Kelto", "碰一下键盘或鼠标就锁屏",
                       "替你看着 · 你去玩吧"};

Environment language(const char* value) { return {{"ZENTROVE_DESK_LANG", value}}; }

TEST(cover_texts, are_in_the_users_first_language) {
  EXPECT_EQ(texts("languages en,zh-Hans"), english);
  EXPECT_EQ(texts("languages fr"), english);
  for (const char* tag : {"zh", "zh-Hans", "zh-Hant-TW", "ZH-hans", "zha"}) {
    EXPECT_EQ(texts(std::string("languages ") + tag + ",en"), chinese) << tag;
  }
}

TEST(cover_texts, are_english_for_a_user_without_a_language) {
  TestMac mac("languages zh", {"process.preferred-languages 1 empty"}, Mode::direct);
  EXPECT_EQ(valueInside(mac,
                        [] {
                          chooseGuardLanguage();
                          return guardFooter();
                        }),
            english[4]);
}

TEST(cover_texts, are_in_the_language_that_the_environment_wants) {
  EXPECT_EQ(texts("languages en", language("zh")), chinese);
  for (const char* value : {"ZH", "zh-Hans", "en", "", " zh"}) {
    EXPECT_EQ(texts("languages zh-Hans", language(value)), english) << value;
  }
}

TEST(cover_texts, name_the_persona_when_it_has_a_face) {
  const Environment mei = {{"ZENTROVE_COVER_FACE", "/faces/oru.png"},
                           {"ZENTROVE_COVER_NAME", "Mei"}};
  const char* world = "image \"/faces/oru.png\"";
  EXPECT_EQ(texts(world, mei)[0], "Oru is using this Mac for Mei");
  EXPECT_EQ(texts(world, mei)[1], "Oru is minding this Mac for Mei");
  Environment chineseMei = mei;
  chineseMei.emplace("ZENTROVE_DESK_LANG", "zh");
  EXPECT_EQ(texts(world, chineseMei)[0], "Oru 正在替 Mei 用这台 Mac");
  EXPECT_EQ(texts(world, chineseMei)[1], "Oru 在替 Mei 看着这台 Mac");
}

TEST(cover_texts, name_the_product_when_the_persona_has_only_a_name) {
  EXPECT_EQ(texts("", {{"ZENTROVE_COVER_NAME", "Mei"}}), english);
  EXPECT_EQ(texts("", {{"ZENTROVE_COVER_NAME", "Mei"}, {"ZENTROVE_COVER_FACE", "/nowhere.png"}}),
            english);
}

TEST(cover_texts, name_the_user_as_the_system_knows_them) {
  EXPECT_EQ(texts("image \"/f.png\"\nuser \"Grace Hopper\" login grace",
                  {{"ZENTROVE_COVER_FACE", "/f.png"}})[1],
            "Oru is minding this Mac for Grace");
}

TEST(cover_texts, count_whole_seconds_from_one_on) {
  TestMac mac("", {}, Mode::direct);
  EXPECT_EQ(
      valueInside(mac,
                  [] {
                    return Texts{guardHint(1, false), guardHint(0, false), guardHint(-1, false),
                                 guardHint(5, true), guardHint(1'000'000'000'000, false)};
                  }),
      (Texts{"Press a key or click within 1 seconds to go back to Kelto", english[3], english[3],
             english[3], "Press a key or click within 1000000000000 seconds to go back to Kelto"}));
}

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
  TestMac mac(
      "directory \"/\"\nlink \"/driver\" to \"/Applications/Desk.app/Contents/MacOS/driver\"\n" +
          world,
      {}, Mode::direct);
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
