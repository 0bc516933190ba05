#include <gtest/gtest.h>

#include "tests/support/posted_events.h"
#include "tests/support/posted_keys.h"

/// A save panel, which a service of the system shows over an application's window, gets its keys.
namespace keyboard_window_panel_test {

using namespace testing_support;

std::string deskWith(const std::string& panels) {
  return R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Docs pid 43 bundle com.example.docs
        window 12 "Letter" at 70,100 size 160x130
            AXTextArea "Text" at 70,100 size 60x30
)" + panels;
}

constexpr const char* panel = "    panel pid 50 window 60 over 12\n";

const std::string intoPanel = success(R"({"ok":true,"pid":50,"via":"background","window":60})");
const std::string intoLetter = success(R"({"ok":true,"pid":43,"via":"background","window":12})");

/// A process of the service, with a window: its number, place and what else is to be said of it.
std::string service(const std::string& pid, const std::string& window) {
  return "    app Service" + pid + " pid " + pid +
         " bundle com.apple.appkit.xpc.openAndSavePanelService accessory\n        window " +
         window + "\n            AXTextField \"Name" + pid + "\" at 75,105 size 20x10\n";
}

TEST(save_panel, gets_the_keys_in_the_services_process) {
  TestMac mac(deskWith(panel));

  const Result run = mac.driver("bg-type Docs name");

  EXPECT_EQ(seen(run), intoPanel);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 50/60 give
   40 ms  post 50/60 key-down 0 "name" public: typed "name" into AXTextField "Save As:"
   52 ms  post 50/60 key-up 0 "name" public
  114 ms  focus 50/60 take
)");
  EXPECT_EQ(mac.valueOf("Docs", "Text"), "");
  EXPECT_EQ(run.elapsed, 154'000);
}

TEST(save_panel, gets_shortcuts_through_the_services_own_menus) {
  TestMac mac(deskWith("        menu File > Close cmd w press: set Text \"closed\"\n" +
                       std::string(panel)));
  EXPECT_EQ(seen(mac.driver("bg-key Docs cmd+w")), intoPanel);
  EXPECT_EQ(mac.valueOf("Docs", "Text"), "");
  EXPECT_EQ(keySteps(mac), "down 55, down 13, up 13, up 55");
}

TEST(save_panel, is_known_by_its_top_left_corner_alone) {
  for (const char* place : {"61 \"Save\" at 70,100 size 10x10", "61 at 71.9,98.1 size 999x999",
                            "61 at 68.1,101.9 size 20x20 off-screen"}) {
    TestMac mac(deskWith(service("51", place)));
    EXPECT_EQ(seen(mac.driver("bg-type Docs x")),
              success(R"({"ok":true,"pid":51,"via":"background","window":61})"))
        << place;
    EXPECT_EQ(mac.valueOf("Service51", "Name51"), "x");
  }
}

TEST(save_panel, at_another_place_gets_no_keys) {
  for (const char* place : {"61 \"Save\" at 72,100 size 160x130", "61 at 70,98 size 160x130",
                            "61 at 68,100 size 160x130", "61 at 70,102 size 160x130"}) {
    TestMac mac(deskWith(service("51", place)));
    EXPECT_EQ(seen(mac.driver("bg-type Docs x")), intoLetter) << place;
    EXPECT_EQ(mac.valueOf("Docs", "Text"), "x");
  }
}

TEST(save_panel, that_is_one_of_two_gets_no_keys) {
  TestMac two(deskWith(panel + service("51", "61 at 70,100 size 20x20")));
  EXPECT_EQ(seen(two.driver("bg-type Docs x")), intoLetter);
  EXPECT_EQ(two.valueOf("Docs", "Text"), "x");

  TestMac oneElsewhere(deskWith(panel + service("51", "61 at 90,100 size 20x20")));
  EXPECT_EQ(seen(oneElsewhere.driver("bg-type Docs x")), intoPanel);
}

TEST(save_panel, of_another_program_gets_no_keys) {
  for (const char* bundle :
       {"bundle com.example.panels", "bundle com.apple.appkit.xpc.openAndSavePanelService2",
        "bundle com.apple.appkit.xpc.openandsavepanelservice", "unbundled"}) {
    TestMac mac(deskWith("    app Panels pid 51 " + std::string(bundle) +
                         "\n        window 61 at 70,100 size 160x130\n"));
    EXPECT_EQ(seen(mac.driver("bg-type Docs x")), intoLetter) << bundle;
  }
}

TEST(save_panel, is_typed_into_when_its_service_is_the_target) {
  TestMac mac(deskWith(service("51", "61 at 70,100 size 20x20")));
  EXPECT_EQ(seen(mac.driver("bg-type Service51 x")),
            success(R"({"ok":true,"pid":51,"via":"background","window":61})"));
}

TEST(save_panel, beside_one_that_is_the_target_gets_the_keys_unless_they_cannot_be_told_apart) {
  const std::string both = deskWith(panel + service("51", "61 at 70,100 size 20x20"));
  TestMac known(both);
  EXPECT_EQ(seen(known.driver("bg-type Service51 x")), intoPanel);

  TestMac unknown(both + "    missing _AXUIElementGetWindow\n");
  EXPECT_EQ(seen(unknown.driver("bg-type Service51 x")),
            success(R"({"ok":true,"pid":51,"via":"background","window":61})"));
  EXPECT_EQ(unknown.valueOf("Service51", "Name51"), "x");
}

TEST(save_panel, over_a_sheet_is_looked_for_at_the_sheets_corner) {
  const std::string sheet =
      "        window 13 at 80,120 size 100x50 sheet of 12\n"
      "            AXTextField \"Name\" at 85,125 size 20x10\n";
  TestMac overSheet(deskWith(sheet + service("51", "61 at 80,120 size 20x20")));
  TestMac overWindow(deskWith(sheet + service("51", "61 at 70,100 size 20x20")));

  EXPECT_EQ(seen(overSheet.driver("bg-type Docs x")),
            success(R"({"ok":true,"pid":51,"via":"background","window":61})"));
  EXPECT_EQ(seen(overWindow.driver("bg-type Docs x")),
            success(R"({"ok":true,"pid":43,"via":"background","window":13})"));
}

TEST(save_panel, over_a_window_outside_the_scope_is_not_reached) {
  TestMac mac(deskWith(panel));
  EXPECT_EQ(seen(mac.driver("bg-type Docs x", {{"CU_WINDOW", "letter"}})), intoPanel);
  EXPECT_EQ(seen(mac.driver("bg-type Docs x", {{"CU_WINDOW", "memo"}})),
            success(R"({"error":"no unambiguous target keyboard window","ok":false})"));
}

TEST(save_panel, has_a_focus_of_its_own_to_be_held) {
  TestMac heldForDocs(deskWith(panel));
  EXPECT_EQ(seen(heldForDocs.driver("bg-type Docs x", {{"CU_FOCUS_PID", "43"}})), intoPanel);
  EXPECT_EQ(heldForDocs.valueOf("Open and Save Panel Service", "Save As:"), "x");

  TestMac held(deskWith(panel));
  held.desktop().mac().world.applications[2].focusByRecord = 60;
  const Result run = held.driver("bg-type Docs x", {{"CU_FOCUS_PID", "50"}});
  EXPECT_EQ(seen(run), intoPanel);
  EXPECT_EQ(waits(held), "12000 12000 50000");
}

TEST(save_panel, whose_service_is_in_front_is_typed_into_without_records) {
  TestMac mac(deskWith(
      "    app S pid 50 bundle com.apple.appkit.xpc.openAndSavePanelService "
      "\n        window 60 at 70,100 size 90x90\n"
      "            AXTextField \"Name\" at 75,105 size 20x10 focused\n    at 0ms front S\n"));
  const Result run = mac.driver("bg-type Docs x");
  EXPECT_EQ(seen(run), intoPanel);
  EXPECT_EQ(mac.valueOf("S", "Name"), "x");
  EXPECT_EQ(run.elapsed, 24'000);
}

TEST(save_panel, whose_service_is_used_in_another_panel_is_left_to_the_user) {
  TestMac mac(
      deskWith("    app S pid 50 bundle com.apple.appkit.xpc.openAndSavePanelService "
               "\n        window 60 at 70,100 size 90x90\n"
               "        window 61 at 400,100 size 90x90 focused\n    at 0ms front S\n"));
  const Result run = mac.driver("bg-type Docs x");
  EXPECT_EQ(seen(run),
            success(R"({"error":"another window of the target app currently owns the user's )"
                    R"(keyboard","ok":false})"));
  EXPECT_EQ(keySteps(mac), "");
}

TEST(save_panel, whose_service_quits_is_given_no_focus) {
  TestMac mac(deskWith(panel), {"private.process-for-pid 1 before quit pid:50"});
  const Result run = mac.driver("bg-type Docs x");
  EXPECT_EQ(
      seen(run),
      success(R"({"error":"background keyboard focus is unavailable on this macOS","ok":false})"));
  EXPECT_EQ(mac.valueOf("Docs", "Text"), "");
}

TEST(save_panel, gets_nothing_when_the_screen_locks_or_the_capture_service_goes) {
  TestMac locked(deskWith(std::string(panel) + "    at 39ms lock\n"));
  EXPECT_EQ(seen(locked.driver("bg-type Docs x")),
            "1 {\"error\":\"the screen locked; input was withheld from the lock screen\","
            "\"locked\":true,\"ok\":false}\n");
  TestMac ended(deskWith(std::string(panel) + "    at 39ms end process 900\n"));
  EXPECT_EQ(seen(ended.driver("bg-type Docs x", {{"CU_CAPTURE_PID", "900"}})),
            failure("native screen sharing stopped; background input is disabled"));
  for (const TestMac* mac : {&locked, &ended}) {
    EXPECT_EQ(mac->world().applications[2].focusByRecord, 0U);
    EXPECT_EQ(mac->valueOf("Docs", "Text"), "");
  }
}

}  // namespace keyboard_window_panel_test
