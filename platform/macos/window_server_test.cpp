#include "platform/window_server.h"

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/fixture.h"
#include "platform/macos/standins/strings.h"
#include "platform/macos/standins/windows.h"

namespace {

using standins::array;
using standins::dictionary;
using standins::number;
using standins::string;
using windowserver::Windows;

class window_server : public standins::AdapterTest {
 protected:
  void TearDown() override {
    standins::setWindows(nullptr);
    standins::setSession(nullptr);
    AdapterTest::TearDown();
  }
};
using session = window_server;
using displayMode = window_server;
using captureAccess = window_server;
using shieldingLevel = window_server;

CFTypeRef whole(std::int64_t value) { return number(value); }

CFDictionaryRef inbox() {
  return dictionary({{u"kCGWindowNumber", whole(7)},
                     {u"kCGWindowOwnerPID", whole(41)},
                     {u"kCGWindowLayer", whole(-2147483603)},
                     {u"kCGWindowName", string(u"Inbox")},
                     {u"kCGWindowBounds", dictionary({{u"X", number(100.5)},
                                                      {u"Y", whole(-80)},
                                                      {u"Width", whole(800)},
                                                      {u"Height", whole(600)}})}});
}

// Every field that is there, in one line.
std::string describe(const windowserver::Window& window) {
  std::string text;
  const auto add = [&](const char* name, const auto& field) {
    if (field) text += name + std::to_string(*field) + " ";
  };
  add("number ", window.number);
  add("pid ", window.ownerPid);
  add("layer ", window.layer);
  if (window.name) text += "name " + *window.name + " ";
  add("x ", window.x);
  add("y ", window.y);
  add("width ", window.width);
  add("height ", window.height);
  return text;
}

std::optional<windowserver::Session> sessionOf(const std::map<std::u16string, CFTypeRef>& entries) {
  standins::setSession(dictionary(entries));
  return windowserver::session();
}

}  // namespace

TEST_F(window_server, windows_gives_every_field_as_it_came) {
  standins::setWindows(array({inbox()}));
  const auto windows = windowserver::windows(Windows::onScreenWithoutDesktop).value();
  ASSERT_EQ(windows.size(), 1u);
  EXPECT_EQ(describe(windows[0]),
            "number 7 pid 41 layer -2147483603 name Inbox x 100.500000 y -80.000000 "
            "width 800.000000 height 600.000000 ");
}

TEST_F(window_server, a_field_that_is_missing_or_of_another_type_is_absent) {
  standins::setWindows(array({
      dictionary({}),
      dictionary({{u"kCGWindowNumber", string(u"7")},
                  {u"kCGWindowLayer", number(0.5)},
                  {u"kCGWindowName", whole(7)},
                  {u"kCGWindowBounds", string(u"0 0 1 1")}}),
      dictionary({{u"kCGWindowNumber", number(8.0)},
                  {u"kCGWindowBounds", dictionary({{u"X", whole(1)}, {u"Y", string(u"2")}})}}),
      string(u"no window"),
  }));
  const auto windows = windowserver::windows(Windows::onScreen).value();
  ASSERT_EQ(windows.size(), 4u);
  EXPECT_EQ(describe(windows[0]), "");
  EXPECT_EQ(describe(windows[1]), "");
  EXPECT_EQ(describe(windows[2]), "number 8 x 1.000000 ");
  EXPECT_EQ(describe(windows[3]), "");
}

TEST_F(window_server, the_lists_are_asked_for_by_the_platform_s_options) {
  standins::setWindows(array({}));
  windowserver::windows(Windows::onScreen);
  windowserver::windows(Windows::onScreenWithoutDesktop);
  EXPECT_TRUE(windowserver::description(7).value().empty());
  EXPECT_EQ(standins::takeCalls(), (Calls{"list 1 0", "list 17 0", "list 8 7"}));
}

TEST_F(window_server, what_the_server_does_not_give_is_absent) {
  EXPECT_FALSE(windowserver::windows(Windows::onScreen));
  EXPECT_FALSE(windowserver::description(7));
  EXPECT_FALSE(windowserver::session());
  standins::removeDisplayMode();
  EXPECT_FALSE(windowserver::displayMode(standins::mainDisplay));
}

TEST_F(session, reads_booleans_and_the_numbers_0_and_1) {
  const auto session = sessionOf({{u"CGSSessionScreenIsLocked", standins::boolean(true)},
                                  {u"kCGSSessionOnConsoleKey", whole(0)}});
  EXPECT_EQ(session->locked, true);
  EXPECT_EQ(session->onConsole, false);
}

TEST_F(session, lacks_what_is_missing_or_no_boolean) {
  EXPECT_EQ(sessionOf({})->locked, std::nullopt);
  const auto session = sessionOf(
      {{u"CGSSessionScreenIsLocked", string(u"yes")}, {u"kCGSSessionOnConsoleKey", whole(2)}});
  EXPECT_EQ(session->locked, std::nullopt);
  EXPECT_EQ(session->onConsole, std::nullopt);
}

TEST_F(displayMode, gives_points_and_pixels) {
  standins::setDisplayMode(1440, 2880);
  const auto mode = windowserver::displayMode(standins::mainDisplay).value();
  EXPECT_EQ(mode.width, 1440u);
  EXPECT_EQ(mode.pixelWidth, 2880u);
  EXPECT_FALSE(windowserver::displayMode(standins::mainDisplay + 1));
}

TEST_F(captureAccess, tells_what_the_system_says) {
  standins::setCaptureAccess(true);
  EXPECT_TRUE(windowserver::captureAccess());
  standins::setCaptureAccess(false);
  EXPECT_FALSE(windowserver::captureAccess());
}

TEST_F(shieldingLevel, is_the_system_s) {
  EXPECT_EQ(windowserver::shieldingLevel(), standins::shield);
}

TEST_F(window_server, the_process_connects_once) {
  windowserver::session();
  windowserver::captureAccess();
  EXPECT_EQ(standins::connections(), 1);
}
