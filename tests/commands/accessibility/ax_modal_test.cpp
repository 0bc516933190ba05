#include <gtest/gtest.h>

#include "tests/support/simulated_run.h"

/// "ax-modal" and "ax-modal-press".
namespace ax_modal_test {

using namespace testing_support;
using Words = std::vector<std::string>;

/// One dialog: a sheet on a window, with a text and three buttons.
constexpr const char* desk = R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Cancel" at 120,90 size 60x20
            AXTextArea "Log" at 120,400 size 700x200
        window 8 at 200,120 size 400x200 sheet of 7
            AXStaticText value "Discard the" at 210,130 size 100x20
            AXGroup
                AXStaticText value "draft?"
            AXButton "Cancel" at 220,200 size 60x20 press: append "cancelled" to Log
            AXButton at 290,200 size 60x20
            AXButton "Discard" at 360,200 size 60x20 press: append "discarded" to Log
)";

std::string modals(const std::string& list) {
  return success(R"({"modals":[)" + list + R"(],"ok":true})");
}

std::string refused(const std::string& error) {
  return success(R"({"error":")" + error + R"(","ok":false})");
}

/// A description without label, text and buttons.
std::string empty(const std::string& role, const std::string& subrole,
                  const std::string& label = "") {
  return R"({"buttons":[],"frame":{"height":20,"width":30,"x":110,"y":90},"label":")" + label +
         R"(","role":")" + role + R"(","subrole":")" + subrole + R"(","text":""})";
}

std::string inWindow(const std::string& lines) {
  return R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Inbox" at 100,80 size 800x600
)" + lines;
}

/// An element with a frame, in the window; of these words.
std::string line(const std::string& role, const std::string& words = "") {
  return "            " + role + " at 110,90 size 30x20 " + words + "\n";
}

Words press(const std::string& text, const std::string& button) {
  return {"ax-modal-press", "Notes", text, button};
}

TEST(ax_modal, describes_a_sheet_with_its_text_and_its_buttons) {
  TestMac mac(desk);

  const Result run = mac.driver("ax-modal Notes");

  // The last child is visited first.
  EXPECT_EQ(seen(run), modals(R"({"buttons":["Discard","Cancel"],)"
                              R"("frame":{"height":200,"width":400,"x":200,"y":120},"label":"",)"
                              R"("role":"AXSheet","subrole":"","text":"Discard the draft?"})"));
  EXPECT_EQ(run.effects, R"(    0 ms  write 41/0 AXManualAccessibility true
    0 ms  write 41/0 AXEnhancedUserInterface true
)");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(ax_modal, finds_sheets_drawers_and_dialogs) {
  TestMac mac(inWindow(line("AXSheet") + line("AXDrawer") + line("AXGroup", "subrole AXDialog") +
                       line("AXGroup", "subrole AXSystemDialog") +
                       line("AXGroup", "subrole AXApplicationDialog") +
                       line("AXGroup \"Alert\"", "subrole AXApplicationAlertDialog value \"x\"") +
                       line("AXGroup", "subrole AXFloatingWindow") + line("AXPopover")));
  EXPECT_EQ(seen(mac.driver("ax-modal Notes")),
            modals(empty("AXGroup", "AXApplicationAlertDialog", "Alert") + "," +
                   empty("AXGroup", "AXApplicationDialog") + "," +
                   empty("AXGroup", "AXSystemDialog") + "," + empty("AXGroup", "AXDialog") + "," +
                   empty("AXDrawer", "") + "," + empty("AXSheet", "")));
}

TEST(ax_modal, counts_a_window_only_when_it_is_modal_and_searches_it_anyway) {
  const std::string window = R"(
    display 1 1440x900
    app Notes pid 41
        window 7 "Alert" at 110,90 size 30x20 subrole AXDialog )";
  const std::string sheet = "\n            AXSheet at 110,90 size 30x20\n";
  TestMac plain(window + sheet);
  EXPECT_EQ(seen(plain.driver("ax-modal Notes")), modals(empty("AXSheet", "")));
  TestMac modal(window + "modal" + sheet);
  EXPECT_EQ(seen(modal.driver("ax-modal Notes")),
            modals(empty("AXWindow", "AXDialog", "Alert") + "," + empty("AXSheet", "")));
  TestMac number(window + "attribute AXModal 1" + sheet);
  EXPECT_EQ(seen(number.driver("ax-modal Notes")), modals(empty("AXSheet", "")));
  TestMac standard(inWindow("") + "        window 8 at 0,0 size 9x9 modal\n");
  EXPECT_EQ(seen(standard.driver("ax-modal Notes")), modals(""));
}

TEST(ax_modal, leaves_out_what_has_no_size) {
  for (const char* size : {"1x20", "30x1", "0x0", "nanx20"}) {
    TestMac mac(inWindow("            AXSheet at 110,90 size " + std::string(size) + "\n"));
    EXPECT_EQ(seen(mac.driver("ax-modal Notes")), modals("")) << size;
  }
  TestMac mac(inWindow("            AXSheet\n"));
  EXPECT_EQ(seen(mac.driver("ax-modal Notes")), modals(""));
  TestMac small(inWindow("            AXSheet at 110,90 size 1.5x1.5\n"));
  EXPECT_EQ(seen(small.driver("ax-modal Notes")),
            modals(R"({"buttons":[],"frame":{"height":1.5,"width":1.5,"x":110,"y":90},"label":"",)"
                   R"("role":"AXSheet","subrole":"","text":""})"));
}

TEST(ax_modal, lists_8_at_most) {
  for (const std::size_t count : {7U, 8U, 9U, 30U}) {
    std::string lines;
    for (std::size_t i = 0; i < count; ++i) lines += line("AXSheet");
    std::string expected;
    for (std::size_t i = 0; i < std::min<std::size_t>(count, 8); ++i) {
      expected += (i == 0 ? "" : ",") + empty("AXSheet", "");
    }
    TestMac mac(inWindow(lines));
    EXPECT_EQ(seen(mac.driver("ax-modal Notes")), modals(expected)) << count;
  }
}

TEST(ax_modal, finds_sheets_60_levels_deep) {
  for (const std::size_t groups : {59U, 60U}) {
    std::string lines;
    std::string indent = "            ";
    for (std::size_t i = 0; i < groups; ++i, indent += " ") lines += indent + "AXGroup\n";
    TestMac mac(inWindow(lines + indent + "AXSheet at 110,90 size 30x20\n"));
    EXPECT_EQ(seen(mac.driver("ax-modal Notes")), modals(groups == 60 ? "" : empty("AXSheet", "")));
  }
}

TEST(ax_modal, finds_buttons_30_levels_below_a_sheet) {
  std::string lines = "            AXSheet \"S\" at 110,90 size 30x20\n";
  std::string indent = "             ";
  for (int i = 0; i < 29; ++i, indent += " ") lines += indent + "AXGroup\n";
  lines += indent + "AXButton \"In\"\n" + indent + " AXButton \"Out\"\n";
  TestMac mac(inWindow(lines));
  EXPECT_EQ(seen(mac.driver("ax-modal Notes")),
            modals(R"({"buttons":["In"],"frame":{"height":20,"width":30,"x":110,"y":90},)"
                   R"("label":"S","role":"AXSheet","subrole":"","text":""})"));
}

TEST(ax_modal, reads_80_elements_and_2000_characters) {
  std::string many = line("AXSheet");
  for (int i = 0; i < 90; ++i) many += "                AXStaticText value \"a\"\n";
  std::string text = "a";
  for (int i = 1; i < 79; ++i) text += " a";
  TestMac mac(inWindow(many));
  std::string found = empty("AXSheet", "");
  found.replace(found.find(R"("text":"")"), 9, R"("text":")" + text + '"');
  EXPECT_EQ(seen(mac.driver("ax-modal Notes")), modals(found));

  const std::string most(2000, 'x');
  TestMac longest(
      inWindow(line("AXSheet") + "                AXStaticText value \"" + most + "y\"\n"));
  found = empty("AXSheet", "");
  found.replace(found.find(R"("text":"")"), 9, R"("text":")" + most + '"');
  EXPECT_EQ(seen(longest.driver("ax-modal Notes")), modals(found));
}

TEST(ax_modal, keeps_to_the_window_scope) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("ax-modal Notes", {{"CU_WINDOW", "archive"}})), modals(""));
  EXPECT_EQ(
      seen(mac.driverWith(press("Discard the draft?", "Discard"), {{"CU_WINDOW", "archive"}})),
      refused("0 dialogs read exactly the approved text"));
}

TEST(ax_modal_press, presses_the_one_button_of_the_dialog_that_reads_so) {
  TestMac mac(desk);

  const Result run = mac.driverWith(press("Discard the draft?", "Cancel"));

  EXPECT_EQ(seen(run), success(R"({"axError":0,"ok":true,"pressed":"Cancel"})"));
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "cancelled");
  EXPECT_EQ(run.elapsed, 0);
}

TEST(ax_modal_press, wants_exactly_the_text) {
  for (const char* text : {"Discard the  draft?", "Discard the draft? ", "discard the draft?",
                           "Discard the", "Discard the draft?!", ""}) {
    TestMac mac(desk);
    EXPECT_EQ(seen(mac.driverWith(press(text, "Discard"))),
              refused("0 dialogs read exactly the approved text"));
    EXPECT_EQ(mac.valueOf("Notes", "Log"), "");
  }
}

TEST(ax_modal_press, does_not_guess_between_two_dialogs_of_the_same_text) {
  const std::string sheet = line("AXSheet") + "                AXStaticText value \"Sure?\"\n" +
                            "                AXButton \"Yes\" press: append \"y\" to Log\n";
  TestMac mac(inWindow(sheet + sheet + "            AXTextArea \"Log\"\n"));
  EXPECT_EQ(seen(mac.driverWith(press("Sure?", "Yes"))),
            refused("2 dialogs read exactly the approved text"));
  EXPECT_EQ(mac.valueOf("Notes", "Log"), "");
}

TEST(ax_modal_press, wants_exactly_the_label_of_one_button) {
  for (const char* label : {"discard", "Discard ", "Disc", "Send", ""}) {
    TestMac mac(desk);
    EXPECT_EQ(seen(mac.driverWith(press("Discard the draft?", label))),
              refused("0 buttons labelled \\\"" + std::string(label) + "\\\" in that dialog"));
    EXPECT_EQ(mac.valueOf("Notes", "Log"), "");
  }
  TestMac two(std::string(desk) + "            AXButton \"Discard\" at 1,1 size 9x9\n");
  EXPECT_EQ(seen(two.driverWith(press("Discard the draft?", "Discard"))),
            refused("2 buttons labelled \\\"Discard\\\" in that dialog"));
  EXPECT_EQ(two.valueOf("Notes", "Log"), "");
}

TEST(ax_modal_press, compares_texts_and_labels_however_composed) {
  TestMac mac(inWindow(line("AXSheet") + "                AXStaticText value \"cafe\\u{301}\"\n" +
                       "                AXButton \"\\u{e9}\" replying -25204\n"));
  EXPECT_EQ(seen(mac.driverWith(press("caf\u00E9", "e\u0301"))),
            success("{\"axError\":-25204,\"ok\":false,\"pressed\":\"e\u0301\"}"));
}

TEST(ax_modal_press, needs_its_words) {
  TestMac mac(desk);
  EXPECT_EQ(seen(mac.driver("ax-modal")), failure("usage: ax-modal <app>"));
  EXPECT_EQ(seen(mac.driver("ax-modal Nobody")), failure("app not running: Nobody"));
  EXPECT_EQ(seen(mac.driver("ax-modal-press Notes text")),
            failure("usage: ax-modal-press <app> <text> <button>"));
  EXPECT_EQ(seen(mac.driver("ax-modal-press Nobody text button")),
            failure("app not running: Nobody"));
}

}  // namespace ax_modal_test
