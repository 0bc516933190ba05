#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// What clicks do in the applications they land in, and how that shows in the reply.
namespace click_effects_test {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,30 size 90x50
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body right: append "menu" to Body
            AXTextArea "Body" at 120,130 size 700x300 value "hello "
            AXCheckBox "Done" at 120,500 size 60x20
            AXButton "Ask" at 200,500 size 60x20 press: open sheet "Sure?"
            AXButton "Close" at 300,500 size 60x20 press: close window
            AXButton "Leave" at 400,500 size 60x20 press: quit
            AXButton "Rename" at 500,500 size 60x20 press: retitle "Drafts"
            AXButton "Stop" at 600,500 size 60x20 press: hang
            AXButton "Show" at 700,500 size 60x20 press: show window "Archive"
            AXButton "Grey" at 800,500 size 60x20 disabled press: toggle
        window 8 "Archive" at 950,80 size 200x200 off-screen
    app Chat pid 42 chromium
        window 9 "Chat" at 1000,300 size 250x150
            AXCheckBox "Ok" at 1010,310 size 40x20 press: toggle right: toggle
)";

/// What the journal says of the last event.
std::string lastEvent(const TestMac& mac) {
  std::string outcome = "none";
  for (const auto& entry : mac.desktop().mac().journal) {
    if (entry.kind == simulator::JournalEntry::Kind::event)
      outcome = entry.what + ": " + entry.outcome;
  }
  return outcome;
}

std::string windowTitles(const TestMac& mac) {
  std::string titles;
  for (const auto& window : mac.world().windows) {
    if (!window.onScreen) continue;
    titles += (titles.empty() ? "" : ", ") + std::to_string(window.number);
    if (window.title) titles += " " + *window.title;
  }
  return titles;
}

std::string changed(platform::WindowNumber window) {
  return success("{\"changed\":true,\"ok\":true,\"via\":\"background\",\"window\":" +
                 std::to_string(window) + "}");
}

std::string unchanged(platform::WindowNumber window) {
  return success("{\"changed\":false,\"ok\":true,\"via\":\"background\",\"window\":" +
                 std::to_string(window) + "}");
}

TEST(click_effects, a_press_appends_text) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(lastEvent(mac), "left-up: pressed AXButton \"Send\"");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello sent");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, a_right_click_opens_what_a_right_click_opens) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 130 95 right");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(lastEvent(mac), "right-up: right-clicked AXButton \"Send\"");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello menu");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, a_double_click_presses_twice) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 130 95 left 2");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello sentsent");
  EXPECT_EQ(run.elapsed, 689'000);
}

TEST(click_effects, a_click_puts_the_caret_into_a_text_area) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 300 200");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(lastEvent(mac), "left-up: focused AXTextArea \"Body\"");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, a_check_box_is_toggled_and_toggled_back_by_a_double_click) {
  TestMac mac(desk);

  const Result once = mac.driver("bg-click Notes 130 505");
  const Result twice = mac.driver("bg-click Notes 130 505 left 2");

  EXPECT_EQ(seen(once), changed(7));
  EXPECT_EQ(seen(twice), unchanged(7));
  EXPECT_EQ(twice.elapsed, 1'089'000);
}

TEST(click_effects, chromium_takes_left_and_right_clicks) {
  TestMac mac(desk);

  const Result left = mac.driver("bg-click Chat 1020 320");
  EXPECT_EQ(lastEvent(mac), "left-up: pressed AXCheckBox \"Ok\"");
  const Result right = mac.driver("bg-click Chat 1020 320 right");
  EXPECT_EQ(lastEvent(mac), "right-up: right-clicked AXCheckBox \"Ok\"");

  EXPECT_EQ(seen(left), changed(9));
  EXPECT_EQ(seen(right), changed(9));
  EXPECT_EQ(left.elapsed, 584'000);
  EXPECT_EQ(right.elapsed, 584'000);
}

TEST(click_effects, a_sheet_that_opens_is_seen_by_the_focus) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 210 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(windowTitles(mac), "5 Start, 10, 7 Inbox, 9 Chat");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, a_window_that_closes_is_a_change) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 310 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(windowTitles(mac), "5 Start, 9 Chat");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, an_application_that_quits_is_a_change_and_has_no_focus_to_take) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 410 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(windowTitles(mac), "5 Start, 9 Chat");
  EXPECT_EQ(run.elapsed, 544'000);  // a record that has no addressee is not waited for
}

TEST(click_effects, a_new_title_is_a_change) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 510 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(windowTitles(mac), "5 Start, 7 Drafts, 9 Chat");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, an_application_that_hangs_loses_its_focus_signature_after_one_time_out) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 610 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(run.elapsed, 6'584'000);
}

TEST(click_effects, another_window_that_comes_up_takes_the_focus) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 710 505");

  EXPECT_EQ(seen(run), changed(7));
  EXPECT_EQ(windowTitles(mac), "5 Start, 8 Archive, 7 Inbox, 9 Chat");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(click_effects, a_disabled_control_does_not_change) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 810 505");

  EXPECT_EQ(seen(run), unchanged(7));
  EXPECT_EQ(lastEvent(mac), "left-up: clicked AXButton \"Grey\", which is disabled");
  EXPECT_EQ(run.elapsed, 984'000);
}

TEST(click_effects, a_control_without_a_reaction_does_not_change) {
  TestMac mac(desk);

  const Result run = mac.driver("bg-click Notes 130 505 right");

  EXPECT_EQ(seen(run), unchanged(7));
  EXPECT_EQ(lastEvent(mac), "right-up: right-clicked AXCheckBox \"Done\", which does nothing");
  EXPECT_EQ(run.elapsed, 984'000);
}

TEST(click_effects, a_window_behind_its_sheet_takes_no_click) {
  TestMac mac(desk);
  mac.driver("bg-click Notes 210 505");

  const Result run = mac.driver("bg-click Notes 130 95");

  EXPECT_EQ(seen(run), unchanged(7));
  EXPECT_EQ(lastEvent(mac), "left-up: clicked a window behind its sheet 10");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
}

TEST(click_effects, the_button_of_a_sheet_closes_it) {
  TestMac mac(desk);
  mac.driver("bg-click Notes 210 505");

  const Result run = mac.driver("bg-click Notes 600 210");

  EXPECT_EQ(seen(run), changed(10));
  EXPECT_EQ(lastEvent(mac), "left-up: pressed AXButton \"OK\"");
  EXPECT_EQ(windowTitles(mac), "5 Start, 7 Inbox, 9 Chat");
}

TEST(click_effects, the_users_pointer_and_front_application_stay) {
  TestMac mac(desk);
  mac.desktop().mac().world.pointer = {700, 20};

  mac.driver("bg-click Notes 130 95 right 2");

  EXPECT_EQ(mac.world().pointer, (simulator::Point{700, 20}));
  EXPECT_EQ(mac.world().frontmost, 40);
  EXPECT_EQ(windowTitles(mac), "5 Start, 7 Inbox, 9 Chat");
}

}  // namespace click_effects_test
