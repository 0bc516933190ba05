#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/simulated_run.h"

/// The exact seam calls of "bg-key" and "bg-type": nothing is asked twice without need.
namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    process 900
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 90x50
            AXTextField "Address" at 0,40 size 80x20 focused
    app Notes pid 41 bundle com.example.notes
        menu File > Save cmd s
        window 7 "Inbox" at 100,80 size 800x600
            AXTextArea "Body" at 120,130 size 700x400
    app Chat pid 42 bundle com.example.chat chromium
        window 9 "Chat" at 1000,300 size 250x150
            AXTextArea "Message" at 1010,310 size 140x20 focused
    app Docs pid 43 bundle com.example.docs
        window 12 "Letter" at 70,100 size 160x130
    panel pid 50 window 60 over 12
)";

/// CU_WINDOW, the global source, the guard's five start-up values.
const std::string startUp = R"(
    process.environment quartz.create-source
    process.environment process.environment process.environment process.environment
    process.full-user-name process.given-name
)";

const std::string liveness = " process.environment process.null-signal ";
const std::string session = " windowserver.session ";
const std::string foreground = " private.front-process private.process-pid ";

/// What every "bg-" command asks first: the service, the session and the foreground.
const std::string preconditions =
    liveness + session + "loader.open-library loader.find-symbol loader.find-symbol" + foreground;

const std::string appByName = " workspace.applications-with-bundle workspace.applications ";

/// The window server's list, and the number of one window element.
const std::string matchWindow =
    " ax.attributes windowserver.windows loop.uptime private.ax-window ";

/// The focused window, its one child, which is no sheet; the entry for it, with the first look at
/// the entry point for numbers; and the list that may show a panel.
const std::string keyboardWindow =
    " ax.attribute ax.attribute ax.attribute "
    "ax.attributes windowserver.windows loader.find-symbol loop.uptime private.ax-window "
    "windowserver.windows ";

const std::string appKit = " streams.list-directory ";

/// Held? SkyLight, its two entry points, the serial number and the record.
const std::string giveFocus =
    foreground +
    " process.environment loader.open-library loader.find-symbol loader.find-symbol "
    "private.process-for-pid private.post-record loop.sleep ";

/// Is it key already? Still not in front? The two records.
const std::string makeKey = " ax.attributes private.process-for-pid " + foreground +
                            "private.post-record private.post-record loop.sleep ";

/// Has the user come meanwhile?
const std::string look = foreground;

/// The pause, in front? held? and the record.
const std::string takeFocus =
    " loop.sleep " + foreground +
    " process.environment private.process-for-pid private.post-record loop.sleep ";

/// And where is the user's keyboard?
const std::string lookInFront = foreground + "ax.attribute ax.attribute ax.attribute" + matchWindow;

const std::string create = " quartz.create-keyboard-event ";
const std::string post = liveness + session + " quartz.post loop.sleep ";

/// Which window is key, before menus are searched and after.
const std::string keyWindow = " ax.attribute ";

/// Visits of elements.
std::string visits(int count) {
  std::string calls;
  for (int i = 0; i < count; ++i) calls += " ax.attributes ";
  return calls;
}

std::string oneALine(const std::string& text) {
  std::istringstream words(text);
  std::string lines;
  for (std::string word; words >> word;) lines += word + "\n";
  return lines;
}

/// The calls of a run with a capture service.
std::string callsOf(const std::vector<std::string>& arguments) {
  TestMac mac(desk);
  std::string lines;
  for (const std::string& call : mac.driverWith(arguments, {{"CU_CAPTURE_PID", "900"}}).calls) {
    lines += call + "\n";
  }
  return lines;
}

const std::string frame = startUp + preconditions + session + appByName + keyboardWindow + appKit +
                          giveFocus + makeKey + look;

TEST(seam_calls, of_a_key) {
  EXPECT_EQ(callsOf({"bg-key", "Notes", "a"}),
            oneALine(frame + create + create + look + post + post + takeFocus));
}

TEST(seam_calls, of_a_chord) {
  EXPECT_EQ(callsOf({"bg-key", "Notes", "ctrl+shift+a"}),
            oneALine(frame + create + create + create + create + create + create + look + post +
                     post + look + post + post + post + post + takeFocus));
}

TEST(seam_calls, of_a_menu_shortcut_are_one_for_each_element_up_to_the_item) {
  // The menu bar, and four elements from there to the item.
  EXPECT_EQ(callsOf({"bg-key", "Notes", "cmd+s"}),
            oneALine(frame + keyWindow + "ax.attribute" + visits(4) + keyWindow + look + liveness +
                     session + "ax.perform loop.sleep" + takeFocus));
}

TEST(seam_calls, of_a_shortcut_that_no_menu_has_are_one_for_each_element_of_the_menus) {
  EXPECT_EQ(callsOf({"bg-key", "Notes", "cmd+b"}),
            oneALine(frame + keyWindow + "ax.attribute" + visits(4) + keyWindow + create + create +
                     create + create + look + post + look + post + post + post + takeFocus));
}

TEST(seam_calls, of_a_shortcut_whose_key_has_a_long_name_ask_no_menu) {
  EXPECT_EQ(callsOf({"bg-key", "Notes", "cmd+tab"}),
            oneALine(frame + create + create + create + create + look + post + look + post + post +
                     post + takeFocus));
}

TEST(seam_calls, of_a_key_into_chromium_read_and_restore_what_has_its_focus) {
  const std::string focused =
      " ax.attribute ax.attribute ax.attribute ax.set-attribute ax.set-attribute ax.attribute ";
  const std::string alreadyKey = " ax.attributes loop.uptime private.ax-window ";
  const std::string restore = session + " ax.attributes ax.set-attribute loop.sleep ";

  EXPECT_EQ(
      callsOf({"bg-key", "com.example.chat", "a"}),
      oneALine(startUp + preconditions + session + "workspace.applications-with-bundle" +
               keyboardWindow + "streams.list-directory streams.file-exists" + focused + giveFocus +
               alreadyKey + look + create + create + look + post + post + takeFocus + restore));
}

TEST(seam_calls, of_a_key_in_front_have_no_record) {
  EXPECT_EQ(callsOf({"bg-key", "Browser", "a"}),
            oneALine(startUp + preconditions + session + appByName + keyboardWindow + appKit +
                     lookInFront + create + create + lookInFront + post + post));
}

TEST(seam_calls, of_a_key_into_a_panel_ask_for_the_applications_own_windows_too) {
  const std::string number = " loop.uptime private.ax-window ";
  const std::string noChildren = " ax.attribute ";
  const std::string panelService = " workspace.application ";

  EXPECT_EQ(callsOf({"bg-key", "pid:43", "a"}),
            oneALine(startUp + preconditions + session + "workspace.application ax.attribute" +
                     noChildren + "ax.attributes windowserver.windows loader.find-symbol" + number +
                     "windowserver.windows" + panelService + "ax.attribute" + number + noChildren +
                     appKit + giveFocus + "ax.attributes" + number + look + create + create + look +
                     post + post + takeFocus));
}

TEST(seam_calls, of_a_text_in_front_look_for_the_keyboard_before_each_piece) {
  const std::string piece = create + create + lookInFront + post + post;

  EXPECT_EQ(callsOf({"bg-type", "Browser", "123456789012345678901"}),
            oneALine(startUp + preconditions + session + appByName + keyboardWindow + appKit +
                     lookInFront + piece + piece));
}

TEST(seam_calls, of_a_key_in_a_window_with_many_children_ask_for_their_roles_alone) {
  TestMac mac(desk + std::string(R"(    app Table pid 44
        window 14 "Rows" at 100,80 size 800x600
            AXRow "Row" at 120,130 size 700x20 repeat 100
)"));
  std::int64_t reads = 0;
  mac.driver("bg-key Table a");
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function == platform::Function::axAttribute &&
        driver::unpack<std::string>(entry.call.arguments.at(1)) == "AXRole") {
      ++reads;
    }
    if (entry.call.function != platform::Function::axAttributes) continue;
    const auto names = driver::unpack<std::vector<std::string>>(entry.call.arguments.at(1));
    EXPECT_EQ(std::find(names.begin(), names.end(), "AXChildren"), names.end());
  }
  EXPECT_EQ(reads, 100);
}

TEST(seam_calls, of_a_text) {
  const std::string piece = create + create + look + post + post;
  const std::string lineBreak =
      create + create + create + create + look + post + look + post + post + post + " loop.sleep ";

  EXPECT_EQ(callsOf({"bg-type", "Notes", "a\nb"}),
            oneALine(frame + piece + lineBreak + piece + takeFocus));
  EXPECT_EQ(callsOf({"bg-type", "Notes", ""}), oneALine(frame + takeFocus));
}

TEST(seam_calls, of_a_key_for_no_application_end_with_the_search_for_it) {
  EXPECT_EQ(callsOf({"bg-key", "Gone", "a"}),
            oneALine(startUp + preconditions + session + appByName));
}

TEST(seam_calls, of_a_key_without_a_combination_are_the_preconditions) {
  EXPECT_EQ(callsOf({"bg-key", "Notes"}), oneALine(startUp + preconditions));
}

}  // namespace
