#include "guard/cover_pictures.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using testing_support::callsOf;
using testing_support::Mode;
using testing_support::TestMac;
using testing_support::valueInside;

TEST(enclosing_bundle, lies_three_folders_above_the_tool) {
  EXPECT_EQ(enclosingBundle("/Applications/Zentrove Desk.app/Contents/MacOS/driver"),
            "/Applications/Zentrove Desk.app");
  EXPECT_EQ(enclosingBundle("/A.app/Contents/Helpers/driver"), "/A.app");
  EXPECT_EQ(enclosingBundle("A.app/Contents/MacOS/driver"), "A.app");
  EXPECT_EQ(enclosingBundle("/A.app//Contents///MacOS/driver/"), "/A.app");
}

TEST(enclosing_bundle, is_none_elsewhere) {
  for (const char* path : {"", "/", "driver", "/driver", "A.app", "/usr/local/bin/driver",
                           "/A.app/Contents/driver", "/A.app/Contents/MacOS/deeper/driver",
                           "/A.APP/Contents/MacOS/driver", "/.app/Contents/MacOS/driver",
                           "/Aapp/Contents/MacOS/driver", "/A.application/Contents/MacOS/driver"}) {
    EXPECT_FALSE(enclosingBundle(path)) << path;
  }
}

std::string digits(std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) text += "0123456789abcdef"[i % 16];
  return text;
}

TEST(photo_bytes, are_the_pairs_of_hexadecimal_digits_behind_the_colon) {
  const auto bytes = photoBytes("JPEGPhoto:\n " + digits(128) + "\n");
  ASSERT_TRUE(bytes);
  EXPECT_EQ(bytes->size(), 64U);
  EXPECT_EQ(bytes->substr(0, 8), "\x01\x23\x45\x67\x89\xAB\xCD\xEF");
}

TEST(photo_bytes, come_without_spaces_and_line_breaks_in_either_case) {
  std::string spread;
  for (const char c : digits(128)) spread += std::string(1, c == 'a' ? 'A' : c) + " \n";
  EXPECT_EQ(photoBytes("x:" + spread), photoBytes("x:" + digits(128)));
}

TEST(photo_bytes, know_every_digit_and_nothing_else) {
  const std::string padding(100, '0');
  EXPECT_EQ(photoBytes(":" + padding + "0123456789abcdefABCDEF")->substr(50),
            "\x01\x23\x45\x67\x89\xAB\xCD\xEF\xAB\xCD\xEF");
  EXPECT_EQ(photoBytes(":" + padding + "/:@G`g12")->substr(50), "\x12");
}

TEST(photo_bytes, are_none_for_fewer_than_101_digits) {
  EXPECT_FALSE(photoBytes("JPEGPhoto: " + digits(100)));
  ASSERT_TRUE(photoBytes("JPEGPhoto: " + digits(101)));
  EXPECT_EQ(photoBytes("JPEGPhoto: " + digits(101))->size(), 50U) << "half a byte is none";
  EXPECT_EQ(photoBytes("JPEGPhoto: " + digits(102))->size(), 51U);
}

TEST(photo_bytes, are_none_without_a_colon) {
  EXPECT_FALSE(photoBytes(digits(200)));
  EXPECT_FALSE(photoBytes(""));
  EXPECT_FALSE(photoBytes("No such key: JPEGPhoto"));
}

TEST(photo_bytes, begin_behind_the_first_colon) {
  EXPECT_EQ(photoBytes("a:" + digits(128) + ":ab")->size(), 65U);
}

TEST(user_picture, is_the_photo_of_the_directory_record) {
  TestMac mac("user \"Ada Lovelace\" login ada\ntool \"/usr/bin/dscl\" photo 600", {},
              Mode::direct);
  EXPECT_TRUE(valueInside(mac, [] { return userPicture().has_value(); }));
  const auto calls = callsOf(mac, platform::Function::toolOutput);
  ASSERT_EQ(calls.size(), 1U);
  EXPECT_TRUE(calls[0].starts_with(
      "process.tool-output \"/usr/bin/dscl\" [\".\" \"-read\" \"/Users/ada\" \"JPEGPhoto\"] -> "))
      << calls[0];
}

TEST(user_picture, is_none_without_a_tool_a_record_or_a_photo) {
  for (const char* world :
       {"", "tool \"/usr/bin/dscl\" output \"\"", "tool \"/usr/bin/dscl\" photo 50",
        "tool \"/usr/bin/dscl\" output \"No such key: JPEGPhoto\\n\"",
        "tool \"/usr/bin/dscl\" output \"JPEGPhoto: \\xFF\\xFE\""}) {
    TestMac mac(world, {}, Mode::direct);
    EXPECT_FALSE(valueInside(mac, [] { return userPicture().has_value(); })) << world;
  }
}

TEST(user_picture, is_none_when_its_bytes_are_no_picture) {
  TestMac mac("tool \"/usr/bin/dscl\" output \"JPEGPhoto: " + digits(300) + "\"", {}, Mode::direct);
  EXPECT_FALSE(valueInside(mac, [] { return userPicture().has_value(); }));
}

TEST(user_picture, is_none_when_the_record_is_no_utf8) {
  TestMac mac("tool \"/usr/bin/dscl\" output \"JPEGPhoto: ffd8ffe0" + digits(300) + "\\xFF\"", {},
              Mode::direct);
  EXPECT_FALSE(valueInside(mac, [] { return userPicture().has_value(); }));
}

}  // namespace
}  // namespace driver
