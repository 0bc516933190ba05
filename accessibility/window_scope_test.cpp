#include <gtest/gtest.h>

#include <algorithm>

#include "accessibility/element.h"
#include "accessibility/snapshot.h"
#include "tests/support/inside.h"

/// Which windows of an application its commands see.
namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using Texts = std::vector<std::string>;

constexpr const char* windowScopeDesk = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
        window 8 "Draft \u{2014} Notes" at 200,80 size 800x600
        window 9 at 10,10 size 100x100
)";

/// The server and the application call the windows differently.
constexpr const char* liars = R"(
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600 attribute AXTitle "Other"
        window 8 "Other" at 200,80 size 800x600 attribute AXTitle "Inbox"
)";

const Environment inbox = {{"CU_WINDOW", "Inbox"}};

/// The titles, by accessibility, of the windows that are seen.
Texts titlesSeen(TestMac& mac, const Environment& environment) {
  return valueInside(
      mac,
      [&] {
        Texts titles;
        for (const ax::Element& window : axWindows(applicationOf(mac, "Notes"))) {
          titles.push_back(axLabel(window));
        }
        return titles;
      },
      environment);
}

Texts titlesSeen(const std::string& world, const Environment& environment,
                 std::vector<std::string> faults = {}) {
  TestMac mac(world, std::move(faults));
  return titlesSeen(mac, environment);
}

TEST(axWindows, are_all_in_the_applications_order_without_a_scope) {
  EXPECT_EQ(titlesSeen(windowScopeDesk, {}), (Texts{"Inbox", "Draft \u2014 Notes", ""}));
  EXPECT_EQ(titlesSeen(windowScopeDesk, {{"CU_WINDOW", ""}}),
            (Texts{"Inbox", "Draft \u2014 Notes", ""}));
}

TEST(axWindows, without_a_scope_are_one_read) {
  TestMac mac(windowScopeDesk);
  EXPECT_EQ(runInside(mac, [&] { axWindows(applicationOf(mac, "Notes")); }).calls,
            Texts{"ax.attribute"});
}

TEST(axWindows, are_those_in_the_scope) {
  EXPECT_EQ(titlesSeen(windowScopeDesk, inbox), Texts{"Inbox"});
  EXPECT_EQ(titlesSeen(windowScopeDesk, {{"CU_WINDOW", "draft"}}), Texts{"Draft \u2014 Notes"});
  EXPECT_EQ(titlesSeen(windowScopeDesk, {{"CU_WINDOW", "notes"}}), Texts{"Draft \u2014 Notes"});
  EXPECT_EQ(titlesSeen(windowScopeDesk, {{"CU_WINDOW", "nothing"}}), Texts{});
}

TEST(axWindows, are_none_when_they_cannot_be_read) {
  EXPECT_EQ(titlesSeen(windowScopeDesk, {}, {"ax.attribute 1 error -25204"}), Texts{});
  EXPECT_EQ(titlesSeen(windowScopeDesk, {}, {"ax.attribute 1 wrong"}), Texts{});
  EXPECT_EQ(titlesSeen("app Notes pid 41\n", {}), Texts{});
  EXPECT_EQ(titlesSeen("app Notes pid 41 attribute AXWindows \"none\"\n", {}), Texts{});
}

TEST(axWindowInScope, believes_the_window_server_first) {
  EXPECT_EQ(titlesSeen(liars, inbox), Texts{"Other"});
}

TEST(axWindowInScope, does_not_read_the_title_when_the_server_knows_the_window) {
  TestMac mac(liars);
  const Result run = runInside(
      mac, [&] { EXPECT_TRUE(axWindowInScope(elementOf(mac, "Notes", "Other"))); }, inbox);
  EXPECT_EQ(run.calls, (Texts{"loader.open-library", "loader.find-symbol", "loop.uptime",
                              "private.ax-window", "windowserver.description"}));
  EXPECT_EQ(callsOf(mac, Function::windowDescription),
            Texts{"windowserver.description 7 -> "
                  "[[[[7] [41] [0] [\"Inbox\"] [100] [80] [800] [600]]]]"});
}

TEST(axWindowInScope, believes_the_application_without_the_private_route) {
  EXPECT_EQ(titlesSeen(std::string(liars) + "    missing _AXUIElementGetWindow\n", inbox),
            Texts{"Inbox"});
  EXPECT_EQ(titlesSeen(std::string(liars) + "    missing ApplicationServices\n", inbox),
            Texts{"Inbox"});
}

TEST(axWindowInScope, believes_the_application_when_the_number_cannot_be_had) {
  EXPECT_EQ(titlesSeen(liars, inbox, {"private.ax-window 1+ error -25201"}), Texts{"Inbox"});
}

TEST(axWindowInScope, believes_the_application_when_the_number_is_refused_at_once) {
  EXPECT_EQ(titlesSeen(R"(
    app Notes pid 41
        window 7 "Inbox" at 0,0 size 99x99 attribute AXTitle "A"
        window 8 "Inbox" at 0,0 size 99x99 attribute AXTitle "B"
        window 9 "Inbox" at 0,0 size 99x99 attribute AXTitle "C"
        window 10 "Other" at 0,0 size 99x99 attribute AXTitle "Inbox"
)",
                       inbox, {"private.ax-window 1+ error -25204"}),
            Texts{"Inbox"});
}

/// An application that names one element of a window as its windows, again and again.
std::string windowNamed(int times) {
  std::string names;
  for (int i = 0; i < times; ++i) names += " \"Page\"";
  return "    app Notes pid 41 attribute AXWindows elements" + names +
         "\n        window 7 \"Inbox\" at 0,0 size 99x99\n"
         "            AXGroup \"Page\" attribute AXMinimized true\n";
}

TEST(axWindows, judges_20000_windows) {
  TestMac mac(windowNamed(20'002));
  std::size_t count = 0;
  const Result run = runInside(
      mac, [&] { count = axWindows(applicationOf(mac, "Notes")).size(); }, inbox);
  EXPECT_EQ(count, 20'000U);
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "private.ax-window"), 20'000);
}

TEST(axWindows, without_a_scope_are_all_that_the_application_has) {
  TestMac mac(windowNamed(20'002));
  std::size_t count = 0;
  const Result run = runInside(mac, [&] { count = axWindows(applicationOf(mac, "Notes")).size(); });
  EXPECT_EQ(count, 20'002U);
  EXPECT_EQ(run.calls, Texts{"ax.attribute"});
}

TEST(reveal, brings_none_back_of_more_windows_than_it_can_ask) {
  TestMac mac(windowNamed(20'001));
  const Result run = mac.driver("reveal Notes");
  EXPECT_EQ(seen(run), success(R"({"did":[],"ok":true,"windows":20001})"));
  EXPECT_EQ(std::count(run.calls.begin(), run.calls.end(), "ax.attribute"), 1);
}

TEST(axWindowInScope, believes_the_application_about_number_0) {
  TestMac mac(liars);
  runInside(
      mac,
      [&] {
        const FixedAnswer answer(Function::axGetWindow, pack(std::vector<std::int64_t>{0, 0, 0}));
        EXPECT_FALSE(axWindowInScope(elementOf(mac, "Notes", "Other")));
        EXPECT_TRUE(axWindowInScope(elementOf(mac, "Notes", "Inbox")));
      },
      inbox);
}

TEST(axWindowInScope, believes_the_application_when_the_server_does_not_know_the_window) {
  for (const char* fault :
       {"windowserver.description 1+ absent", "windowserver.description 1+ empty",
        "windowserver.description 1+ wrong"}) {
    EXPECT_EQ(titlesSeen(liars, inbox, {fault}), Texts{"Inbox"}) << fault;
  }
}

TEST(axWindowInScope, looks_for_the_entry_with_the_windows_number) {
  TestMac mac(liars);
  windowserver::Window other{99, 41, 0, "Other", 0, 0, 100, 100};
  windowserver::Window right{7, 41, 0, "Inbox", 0, 0, 100, 100};
  const std::optional<std::vector<windowserver::Window>> list = {{other, right}};
  runInside(
      mac,
      [&] {
        const FixedAnswer answer(Function::windowDescription, pack(list));
        EXPECT_TRUE(axWindowInScope(elementOf(mac, "Notes", "Other")));
      },
      inbox);
}

TEST(axWindowInScope, takes_a_window_without_a_title_on_the_server_for_untitled) {
  // Other applications' titles are hidden without the screen recording permission.
  EXPECT_EQ(titlesSeen(std::string(windowScopeDesk) + "    deny screen-recording\n", inbox),
            Texts{});
}

TEST(axWindowInScope, is_false_for_a_window_that_nothing_is_known_of) {
  for (const char* title : {"failing AXTitle -25212", "attribute AXTitle 5"}) {
    EXPECT_EQ(
        titlesSeen(std::string("app Notes pid 41\n    window 7 at 0,0 size 99x99 ") + title + "\n",
                   inbox, {"private.ax-window 1+ error -25201"}),
        Texts{})
        << title;
  }
}

}  // namespace
}  // namespace driver
