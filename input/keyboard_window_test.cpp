#include "input/keyboard_window.h"

#include <gtest/gtest.h>

#include <limits>

#include "accessibility/element.h"
#include "accessibility/snapshot.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;
using platform::Function;

using List = std::vector<windowserver::Window>;

constexpr const char* notes = R"(
    app Browser pid 40 bundle com.example.browser frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

std::string described(const std::optional<TargetWindow>& window) {
  if (!window) return "none";
  const auto whole = [](double number) { return std::to_string(static_cast<int>(number)); };
  const Rect& bounds = window->bounds;
  return std::to_string(window->id) + " at " + whole(bounds.x) + "," + whole(bounds.y) + " size " +
         whole(bounds.width) + "x" + whole(bounds.height);
}

/// The label of the innermost sheet of Inbox, in a world whose lines are given.
std::string sheetOf(const std::string& contents) {
  TestMac mac(notes + contents);
  return valueInside(mac,
                     [&] { return axLabel(innermostSheet(elementOf(mac, "Notes", "Inbox"))); });
}

TEST(innermostSheet, is_the_window_itself_without_a_sheet) {
  EXPECT_EQ(sheetOf(""), "Inbox");
  EXPECT_EQ(sheetOf("            AXGroup \"Bar\"\n                AXSheet \"Deep\"\n"), "Inbox");
}

TEST(innermostSheet, is_the_only_sheet_of_the_only_sheet) {
  EXPECT_EQ(sheetOf("            AXButton \"Send\"\n"
                    "            AXSheet \"Save\"\n"
                    "                AXSheet \"Replace\"\n"),
            "Replace");
}

TEST(innermostSheet, is_none_of_several) {
  EXPECT_EQ(sheetOf("            AXSheet \"Save\"\n            AXSheet \"Print\"\n"), "Inbox");
  EXPECT_EQ(sheetOf("            AXSheet \"Save\"\n"
                    "                AXSheet \"Replace\"\n"
                    "                AXSheet \"Lose\"\n"),
            "Save");
}

TEST(innermostSheet, reads_roles_and_of_the_sheet_its_children) {
  TestMac mac(std::string(notes) + "            AXButton \"Send\"\n            AXSheet \"Save\"\n");
  const ax::Element window = elementOf(mac, "Notes", "Inbox");
  const Result run = runInside(mac, [&] { innermostSheet(window); });
  EXPECT_EQ(run.calls, (std::vector<std::string>{"ax.attribute", "ax.attribute", "ax.attribute",
                                                 "ax.attribute"}));
}

TEST(innermostSheet, ends_after_64_sheets_that_hold_each_other) {
  TestMac mac(std::string(notes) +
              "            AXGroup \"Save\" attribute AXRole \"AXSheet\" "
              "attribute AXChildren elements \"Save\"\n");
  const ax::Element window = elementOf(mac, "Notes", "Inbox");
  const Result run = runInside(mac, [&] { EXPECT_EQ(axLabel(innermostSheet(window)), "Save"); });
  // The children of the window and of all sheets but the last, their roles, the label.
  EXPECT_EQ(run.calls.size(), 64U + 64U + 1U);
}

TEST(innermostSheet, counts_to_two) {
  TestMac mac(std::string(notes) +
              "            AXSheet \"Save\"\n            AXSheet \"Print\"\n"
              "            AXButton repeat 5\n");
  const ax::Element window = elementOf(mac, "Notes", "Inbox");
  const Result run = runInside(mac, [&] { innermostSheet(window); });
  // The window's children, and the roles of the two.
  EXPECT_EQ(run.calls.size(), 1U + 2U);
}

TEST(innermostSheet, looks_at_20000_elements) {
  const auto sheetBehind = [](int others) {
    return sheetOf("            AXButton repeat " + std::to_string(others) +
                   "\n            AXSheet \"Save\"\n");
  };
  EXPECT_EQ(sheetBehind(19'999), "Save");
  EXPECT_EQ(sheetBehind(20'000), "Inbox");
}

TEST(hasSheet, looks_at_all_windows) {
  TestMac without(notes);
  EXPECT_FALSE(valueInside(without, [&] { return hasSheet(applicationOf(without, "Notes")); }));
  for (const char* sheets :
       {"        AXSheet \"Save\"\n", "        AXSheet \"Save\"\n        AXSheet \"Print\"\n"}) {
    TestMac mac(
        "app Notes pid 41\n"
        "        window 8 \"Outbox\" at 0,0 size 100x100\n"
        "        window 7 \"Inbox\" at 0,0 size 100x100\n" +
        std::string("        ") + sheets);
    EXPECT_TRUE(valueInside(mac, [&] { return hasSheet(applicationOf(mac, "Notes")); })) << sheets;
  }
}

TEST(hasSheet, looks_at_20000_windows) {
  const auto isSeenBehind = [](int others) {
    TestMac mac("app Notes pid 41\n    repeat " + std::to_string(others) +
                " as n\n        window {n} at 0,0 size 9x9\n"
                "    window 30000 at 0,0 size 9x9\n        AXSheet \"Save\"\n");
    return valueInside(mac, [&] { return hasSheet(applicationOf(mac, "Notes")); });
  };
  EXPECT_TRUE(isSeenBehind(19'999));
  EXPECT_FALSE(isSeenBehind(20'000));
}

/// An entry for Inbox of process 41.
windowserver::Window entry(std::int64_t number) {
  return {number, 41, 0, "Inbox", 100.0, 80.0, 800.0, 600.0};
}

/// The window of the element Inbox, in a list that the server gives.
std::string found(const std::optional<List>& list, const std::string& world = "") {
  TestMac mac(notes + world);
  const ax::Element window = elementOf(mac, "Notes", "Inbox");
  return valueInside(mac, [&] {
    const FixedAnswer server(Function::windows, driver::pack(list));
    return described(inputWindow(window, 41));
  });
}

TEST(inputWindow, is_the_one_with_the_elements_number) {
  windowserver::Window other = entry(7);
  other.name = "Elsewhere";
  other.x = 300;

  EXPECT_EQ(found(List{entry(6), other, entry(8)}), "7 at 300,80 size 800x600");
  EXPECT_EQ(found(List{entry(6), entry(8)}), "none");
  EXPECT_EQ(found(std::nullopt), "none");
}

TEST(inputWindow, asks_for_all_windows_without_the_desktop) {
  TestMac mac(notes);
  const ax::Element window = elementOf(mac, "Notes", "Inbox");
  EXPECT_EQ(valueInside(mac, [&] { return described(inputWindow(window, 41)); }),
            "7 at 100,80 size 800x600");
  EXPECT_EQ(callsOf(mac, Function::windows).at(0).substr(0, 23), "windowserver.windows 16");
}

TEST(inputWindow, is_none_of_two_with_one_number) {
  EXPECT_EQ(found(List{entry(7), entry(7)}), "none");
}

TEST(inputWindow, is_a_window_of_the_process_with_bounds) {
  windowserver::Window foreign = entry(7);
  foreign.ownerPid = 42;
  windowserver::Window ownerless = entry(7);
  ownerless.ownerPid.reset();
  windowserver::Window boundless = entry(7);
  boundless.height.reset();
  windowserver::Window infinite = entry(7);
  infinite.x = std::numeric_limits<double>::infinity();

  EXPECT_EQ(found(List{foreign, ownerless, boundless, infinite}), "none");
  EXPECT_EQ(found(List{foreign, ownerless, boundless, infinite, entry(7)}),
            "7 at 100,80 size 800x600");
}

const std::string nameless = "    missing _AXUIElementGetWindow\n";

TEST(inputWindow, without_a_number_has_the_title_and_the_frame) {
  windowserver::Window renamed = entry(5);
  renamed.name = "Outbox";
  windowserver::Window untitled = entry(6);
  untitled.name.reset();

  EXPECT_EQ(found(List{renamed, untitled, entry(8)}, nameless), "8 at 100,80 size 800x600");
  EXPECT_EQ(found(List{renamed, untitled}, nameless), "none");
  EXPECT_EQ(found(List{entry(8), entry(9)}, nameless), "none");
}

TEST(inputWindow, without_a_number_takes_a_frame_that_differs_by_less_than_two_points) {
  for (const auto field : {&windowserver::Window::x, &windowserver::Window::y,
                           &windowserver::Window::width, &windowserver::Window::height}) {
    for (const double difference : {-1.9, 1.9}) {
      windowserver::Window close = entry(8);
      close.*field = *(close.*field) + difference;
      EXPECT_NE(found(List{close}, nameless), "none");
    }
    for (const double difference : {-2.0, 2.0, 50.0}) {
      windowserver::Window off = entry(8);
      off.*field = *(off.*field) + difference;
      EXPECT_EQ(found(List{off}, nameless), "none");
    }
  }
}

TEST(inputWindow, without_a_number_takes_a_missing_name_for_an_empty_title) {
  TestMac mac(
      "app Notes pid 41\n    window 7 at 100,80 size 800x600\nmissing ApplicationServices\n");
  windowserver::Window untitled = entry(8);
  untitled.name.reset();
  const Result run = runInside(mac, [&] {
    const auto windows = axWindows(applicationOf(mac, "Notes"));
    const FixedAnswer server(Function::windows, driver::pack(std::optional(List{untitled})));
    EXPECT_EQ(described(inputWindow(windows.at(0), 41)), "8 at 100,80 size 800x600");
  });
  EXPECT_EQ(run.status, 0);
}

TEST(inputWindow, is_not_looked_for_behind_an_entry_with_an_impossible_number) {
  for (const std::int64_t number : {std::int64_t{-1}, std::int64_t{1} << 32}) {
    EXPECT_EQ(found(List{entry(number), entry(7)}), "none");
    EXPECT_EQ(found(List{entry(7), entry(number)}), "7 at 100,80 size 800x600");
    windowserver::Window foreign = entry(number);
    foreign.ownerPid = 42;
    EXPECT_EQ(found(List{foreign, entry(7)}), "7 at 100,80 size 800x600");
  }
}

TEST(inputWindow, is_none_that_the_server_does_not_number) {
  windowserver::Window unnumbered = entry(0);
  EXPECT_EQ(found(List{unnumbered}, nameless), "none");
  unnumbered.number.reset();
  EXPECT_EQ(found(List{unnumbered}, nameless), "none");
  EXPECT_EQ(found(List{unnumbered, entry(7)}), "7 at 100,80 size 800x600");
}

TEST(inputWindow, is_none_of_an_element_without_a_frame) {
  TestMac mac(std::string(notes) + "        AXSheet \"Save\"\n");
  const ax::Element sheet = elementOf(mac, "Notes", "Save");
  const Result run = runInside(mac, [&] { EXPECT_FALSE(inputWindow(sheet, 41)); });
  EXPECT_EQ(run.calls, std::vector<std::string>{"ax.attributes"});
}

std::string keyboardWindowIn(const std::string& world, const Environment& environment = {}) {
  TestMac mac(world);
  return valueInside(
      mac, [] { return described(keyboardWindow(*workspace::application(41))); }, environment);
}

constexpr const char* twoWindows = R"(
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
        window 8 "Outbox" at 120,90 size 400x300 focused
)";

TEST(keyboardWindow, is_the_focused_window) {
  EXPECT_EQ(keyboardWindowIn(twoWindows), "8 at 120,90 size 400x300");
}

TEST(keyboardWindow, is_the_first_in_the_scope_when_the_focused_one_is_not) {
  EXPECT_EQ(keyboardWindowIn(twoWindows, {{"CU_WINDOW", "inbox"}}), "7 at 100,80 size 800x600");
  EXPECT_EQ(keyboardWindowIn(twoWindows, {{"CU_WINDOW", "outbox"}}), "8 at 120,90 size 400x300");
  EXPECT_EQ(keyboardWindowIn(twoWindows, {{"CU_WINDOW", "drafts"}}), "none");
}

TEST(keyboardWindow, is_the_first_window_when_none_is_focused) {
  EXPECT_EQ(keyboardWindowIn("app Notes pid 41 no-focused-window\n"
                             "    window 7 \"Inbox\" at 100,80 size 800x600\n"
                             "    window 8 \"Outbox\" at 120,90 size 400x300\n"),
            "7 at 100,80 size 800x600");
  EXPECT_EQ(keyboardWindowIn("app Notes pid 41\n"), "none");
}

TEST(keyboardWindow, is_the_sheet_on_the_window) {
  const std::string sheet = "    window 10 \"Rename\" at 200,120 size 300x120 sheet of 7\n";
  EXPECT_EQ(keyboardWindowIn("app Notes pid 41\n"
                             "    window 7 \"Inbox\" at 100,80 size 800x600\n" +
                             sheet),
            "10 at 200,120 size 300x120");
  EXPECT_EQ(
      keyboardWindowIn("app Notes pid 41\n"
                       "    window 7 \"Inbox\" at 100,80 size 800x600 focused\n" +
                       sheet + "    window 11 \"Print\" at 200,120 size 300x120 sheet of 7\n"),
      "7 at 100,80 size 800x600");
}

/// The panel over a window at 100,80, as "PID/NUMBER", in a world with these further lines.
std::string panelIn(const std::string& world, std::vector<std::string>* calls = nullptr) {
  TestMac mac(notes + world);
  std::string panel = "none";
  const Result run = runInside(mac, [&] {
    const auto found = remoteOpenPanel(*workspace::application(41), {7, {100, 80, 800, 600}});
    if (found) panel = std::to_string(found->service.pid) + "/" + std::to_string(found->window.id);
  });
  if (calls != nullptr) *calls = run.calls;
  return panel;
}

std::string service(const std::string& pid, const std::string& windows) {
  return "    app Panels" + pid + " pid " + pid +
         " bundle com.apple.appkit.xpc.openAndSavePanelService accessory\n" + windows;
}

TEST(remoteOpenPanel, is_the_services_window_at_the_target_windows_corner) {
  EXPECT_EQ(panelIn(""), "none");
  EXPECT_EQ(panelIn(service("60", "        window 90 at 100,80 size 400x300\n")), "60/90");
  EXPECT_EQ(panelIn(service("60", "        window 90 at 101.9,78.1 size 10x10\n")), "60/90");
  EXPECT_EQ(panelIn(service("60", "        window 90 at 102,80 size 400x300\n")), "none");
  EXPECT_EQ(panelIn(service("60", "        window 90 at 100,78 size 400x300\n")), "none");
}

TEST(remoteOpenPanel, is_found_off_screen_too) {
  EXPECT_EQ(panelIn(service("60", "        window 90 at 100,80 size 400x300 off-screen\n")),
            "60/90");
}

TEST(remoteOpenPanel, is_of_the_service_alone) {
  EXPECT_EQ(panelIn("    app Other pid 60 bundle com.example.other\n"
                    "        window 90 at 100,80 size 400x300\n"),
            "none");
}

/// Whether the panel is found where the window server lists this alone.
bool isPanel(const windowserver::Window& listed) {
  TestMac mac(notes + service("60", ""));
  return valueInside(mac, [&] {
    const FixedAnswer server(Function::windows, driver::pack(std::optional(List{listed})));
    return remoteOpenPanel(*workspace::application(41), {7, {100, 80, 800, 600}}).has_value();
  });
}

TEST(remoteOpenPanel, has_a_number_a_frame_and_an_owner_that_can_be_a_process) {
  windowserver::Window whole = entry(90);
  whole.ownerPid = 60;
  windowserver::Window numberless = whole;
  numberless.number.reset();
  windowserver::Window frameless = whole;
  frameless.width.reset();
  windowserver::Window impossible = whole;
  impossible.ownerPid = (std::int64_t{1} << 32) + 60;
  EXPECT_TRUE(isPanel(whole));
  for (const windowserver::Window& listed : {numberless, frameless, impossible, entry(7)}) {
    EXPECT_FALSE(isPanel(listed));
  }
}

TEST(remoteOpenPanel, is_none_of_several) {
  EXPECT_EQ(panelIn(service("60",
                            "        window 90 at 100,80 size 400x300\n"
                            "        window 91 at 101,80 size 400x300\n")),
            "none");
  EXPECT_EQ(panelIn(service("60", "        window 90 at 100,80 size 400x300\n") +
                    service("61", "        window 91 at 100,80 size 400x300\n")),
            "none");
}

TEST(remoteOpenPanel, is_no_window_of_the_application_itself) {
  TestMac mac(notes + service("60", "        window 90 at 100,80 size 400x300\n"));
  const auto panel = valueInside(mac, [&] {
    // The panel is also a window of the application, as where it is shown inside one.
    const FixedAnswer number(Function::axGetWindow,
                             driver::pack(std::vector<std::int64_t>{0, 0, 90}));
    return remoteOpenPanel(*workspace::application(41), {7, {100, 80, 800, 600}}).has_value();
  });
  EXPECT_FALSE(panel);
}

TEST(remoteOpenPanel, is_another_one_than_the_target_which_is_known_by_its_number_alone) {
  const std::string both = service("60", "        window 90 at 100,80 size 400x300\n") +
                           service("61", "        window 91 at 100,80 size 400x300\n");
  for (const auto& [missing, expected] : std::vector<std::pair<std::string, std::string>>{
           {"", "61"}, {"    missing _AXUIElementGetWindow\n", "none"}}) {
    TestMac mac(both + missing);
    std::string found = "none";
    runInside(mac, [&] {
      const auto panel = remoteOpenPanel(*workspace::application(60), {90, {100, 80, 400, 300}});
      if (panel) found = std::to_string(panel->service.pid);
    });
    EXPECT_EQ(found, expected) << missing;
  }
}

TEST(remoteOpenPanel, costs_one_list_where_nothing_lies_over_the_window) {
  std::vector<std::string> calls;
  panelIn(service("60", "        window 90 at 300,80 size 400x300\n"), &calls);
  EXPECT_EQ(calls, (std::vector<std::string>{"workspace.application", "windowserver.windows"}));
}

}  // namespace
}  // namespace driver
