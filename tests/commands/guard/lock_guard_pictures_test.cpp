#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "simulator/drawing/pictures.h"
#include "tests/expectations/comparisons.h"
#include "tests/support/guarded.h"
#include "tests/support/temporary_folder.h"

// What the user sees of the guard, as pictures in tests/commands/guard/pictures. With
// UPDATE_EXPECT=1 in the environment one that looks different is drawn anew, and its test fails all
// the same; the difference is for people to judge.

namespace {

using testing_support::Environment;
using testing_support::Mode;
using testing_support::readPicture;
using testing_support::TemporaryFolder;
using testing_support::TestMac;

constexpr const char* desk = R"(
display 1 1440x900 scale 0.4
user "Ada Lovelace" login ada
pointer 1180,690
directory "/"
link "/driver" to "/Applications/Zentrove Desk.app/Contents/MacOS/driver"
image "/faces/oru.png"
app Browser pid 40 bundle com.example.browser chromium frontmost
    window 3 "News" at 60,70 size 820x640
        AXWebArea "News" at 60,110 size 820x600
            AXHeading "What the day brings" at 90,130 size 500x40
            AXStaticText at 90,190 size 600x80 value "Rain in the morning, sun by noon."
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 620,220 size 720x520
        AXButton "Send" at 640,260 size 80x24
        AXTextArea "Body" at 640,300 size 660x380 value "Dear Ada, the report is done."
)";

std::string fileOf(const std::string& name) {
  return std::string(DRIVER_SOURCE_DIR) + "/tests/commands/guard/pictures/" + name + ".png";
}

/// The screens while the guard runs, at the end of what happens there; it goes on after that.
std::string screens(const std::string& furtherWorld, const Environment& environment) {
  TestMac mac(desk + furtherWorld, {}, Mode::direct);
  const std::vector<std::string> commandLine = {"driver", "lock-guard"};
  const std::size_t client = mac.desktop().join(commandLine, environment);
  const int status = testing_support::runDirect(mac.desktop(), client, commandLine);
  const auto png = simulator::drawPng(simulator::screenPicture(mac.world()));
  mac.desktop().leave(client);
  EXPECT_TRUE(status == testing_support::stillRunning || mac.world().session.locked);
  return png.value_or("");
}

void expectPicture(const std::string& name, const std::string& furtherWorld = "",
                   const Environment& environment = {}) {
  const std::string png = screens(furtherWorld, environment);
  const TemporaryFolder folder;
  folder.write("drawn.png", png);
  const auto drawn = readPicture(folder.path("drawn.png"));
  const auto expected = readPicture(fileOf(name));
  EXPECT_EQ(drawn.width, expected.width) << name;
  EXPECT_EQ(drawn.height, expected.height) << name;
  EXPECT_TRUE(drawn.pixels == expected.pixels) << name << " looks different";
  if (drawn.pixels != expected.pixels && expectations::wanted()) {
    std::ofstream(fileOf(name), std::ios::binary) << png;
  }
}

constexpr const char* photo = "tool \"/usr/bin/dscl\" photo 600\n";
constexpr const char* chinese = "languages zh-Hans\n";

Environment persona(const Environment& further = {}) {
  Environment environment = {{"ZENTROVE_COVER_FACE", "/faces/oru.png"},
                             {"ZENTROVE_COVER_NAME", "Ada"}};
  environment.insert(further.begin(), further.end());
  return environment;
}

const Environment operating = {{"ZENTROVE_COVER_OPERATING", "1"}};

TEST(guard_pictures, of_the_product_with_picture_and_badge) {
  expectPicture("product-minding", photo);
  expectPicture("product-operating", photo, operating);
}

TEST(guard_pictures, of_the_product_with_its_icon_alone) { expectPicture("product-icon"); }

TEST(guard_pictures, of_the_product_without_a_picture) {
  expectPicture("product-bare", "link \"/Applications/Zentrove Desk.app\" to \"/opt/desk\"\n");
}

TEST(guard_pictures, of_the_product_in_chinese) {
  expectPicture("product-minding-chinese", std::string(photo) + chinese);
  expectPicture("product-operating-chinese", std::string(photo) + chinese, operating);
}

TEST(guard_pictures, of_the_persona) {
  expectPicture("persona-minding", photo, persona());
  expectPicture("persona-operating", photo, persona(operating));
}

TEST(guard_pictures, of_the_persona_in_chinese) {
  expectPicture("persona-minding-chinese", chinese, persona());
  expectPicture("persona-operating-chinese", chinese, persona(operating));
}

TEST(guard_pictures, of_the_countdown) {
  // The guard stops being looked at when nothing more is scripted, after its last count.
  const Environment grace = {{"ZENTROVE_COVER_GRACE", "7.5"}};
  expectPicture("countdown", photo, grace);
  expectPicture("countdown-chinese", std::string(photo) + chinese, persona(grace));
}

TEST(guard_pictures, of_two_screens_of_different_size) {
  expectPicture("two-screens", std::string(photo) + "display 2 1024x640 at 1440,130\n", persona());
}

TEST(guard_pictures, of_the_mac_that_it_has_locked) {
  expectPicture("locked", std::string(photo) + "at 1s user key a\n");
}

}  // namespace
