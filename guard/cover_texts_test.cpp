#include "guard/cover_view.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace driver
