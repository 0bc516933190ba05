#include <gtest/gtest.h>

#include "tests/support/pasting.h"
#include "tests/support/posted_events.h"

/// Pastes that arrive: what they post, how long they take and what they ask of the Mac.
namespace paste_files_test {

using namespace testing_support;

TEST(bg_paste_files, presses_command_v_with_the_files_on_the_clipboard) {
  TestMac mac(pastingDesk);

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), pastedIntoNotes);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 41/7 give
   40 ms  pasteboard clear
   40 ms  pasteboard write-files "/a.txt"
   40 ms  post 41/7 key-down 55 with cmd public: cmd
   52 ms  post 41/7 key-down 9 with cmd public: asked for a paste into AXTextArea "Body"
   64 ms  post 41/7 key-up 9 with cmd public
   76 ms  post 41/7 key-up 55 with cmd public
  102 ms  landing 41/7 paste "/a.txt": pasted paths as text into AXTextArea "Body"
  388 ms  pasteboard clear
  388 ms  pasteboard write "old"
  438 ms  focus 41/7 take
)");
  EXPECT_EQ(run.elapsed, 478'000);
  EXPECT_EQ(waits(mac), "40000 12000 12000 12000 12000 300000 50000 40000");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a.txt");
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(bg_paste_files, goes_through_the_menu_of_an_application_that_has_the_shortcut) {
  TestMac mac(pastingDesk);

  const Result run = mac.driver("bg-paste-files Mail /a.txt /b.png");

  EXPECT_EQ(seen(run), pastedIntoMail);
  EXPECT_EQ(run.effects, R"(    0 ms  focus 42/8 give
   40 ms  pasteboard clear
   40 ms  pasteboard write-files "/a.txt\n/b.png"
   40 ms  action 42/0 AXPress: pressed AXMenuItem "Paste", asked for a paste into AXTextArea "Letter"
   90 ms  landing 42/8 paste "/a.txt\n/b.png": attached files to AXTextArea "Letter"
  440 ms  pasteboard clear
  440 ms  pasteboard write "old"
  490 ms  focus 42/8 take
)");
  EXPECT_EQ(run.elapsed, 530'000);
  EXPECT_EQ(waits(mac), "40000 100000 300000 50000 40000");
  EXPECT_EQ(attachedFiles(mac, "Mail"), "a.txt b.png");
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(bg_paste_files, makes_another_window_key_first) {
  TestMac mac(pastingDeskWith(R"(
app Docs pid 43
    window 20 "Letter" at 100,80 size 800x600
        AXTextArea "Text" at 120,130 size 700x400
)"));

  const Result run = mac.driver("bg-paste-files Docs /a.txt");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":43,"via":"background","window":20})"));
  EXPECT_EQ(waits(mac), "40000 300000 12000 12000 12000 12000 300000 50000 40000");
  EXPECT_EQ(run.elapsed, 778'000);
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(bg_paste_files, leaves_focus_alone_where_the_user_types) {
  TestMac mac(pastingDesk);

  const Result run = mac.driver("bg-paste-files Browser /a.txt");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":40,"via":"background","window":5})"));
  EXPECT_EQ(run.effects, R"(    0 ms  pasteboard clear
    0 ms  pasteboard write-files "/a.txt"
    0 ms  post 40/5 key-down 55 with cmd public: cmd
   12 ms  post 40/5 key-down 9 with cmd public: asked for a paste into AXTextField "Address"
   24 ms  post 40/5 key-up 9 with cmd public
   36 ms  post 40/5 key-up 55 with cmd public
   62 ms  landing 40/5 paste "/a.txt": pasted paths as text into AXTextField "Address"
  348 ms  pasteboard clear
  348 ms  pasteboard write "old"
)");
  EXPECT_EQ(run.elapsed, 348'000);
  EXPECT_EQ(mac.valueOf("Browser", "Address"), "/a.txt");
}

TEST(bg_paste_files, leaves_focus_alone_that_is_held) {
  TestMac mac(pastingDesk);
  mac.desktop().mac().world.applications[1].focusByRecord = 7;

  const Result run = mac.driver("bg-paste-files Notes /a.txt", {{"CU_FOCUS_PID", "41"}});

  EXPECT_EQ(seen(run), pastedIntoNotes);
  EXPECT_EQ(waits(mac), "12000 12000 12000 12000 300000 50000");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello /a.txt");
  EXPECT_EQ(mac.world().applications[1].focusByRecord, 7U);
}

TEST(bg_paste_files, goes_to_the_panel_service_that_shows_a_panel_over_the_window) {
  TestMac mac(pastingDeskWith("panel pid 50 window 60 over 7\n"));

  const Result run = mac.driver("bg-paste-files Notes /a.txt");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":50,"via":"background","window":60})"));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
  EXPECT_EQ(clipboard(mac), usersClipboard);
}

TEST(bg_paste_files, gives_a_chromium_field_its_focus_back) {
  TestMac mac(pastingDeskWith(R"(
app Chat pid 44 chromium
    window 30 "Chat" at 100,80 size 800x600
        AXTextArea "Message" at 120,130 size 700x400 takes files focused
)"));

  const Result run = mac.driver("bg-paste-files Chat /a.txt");

  EXPECT_EQ(seen(run), success(R"({"ok":true,"pid":44,"via":"background","window":30})"));
  EXPECT_EQ(waits(mac), "40000 12000 12000 12000 12000 300000 50000 40000 100000");
  EXPECT_EQ(attachedFiles(mac, "Chat"), "a.txt");
}

TEST(bg_paste_files, keeps_the_order_of_the_paths) {
  TestMac mac(pastingDesk);
  EXPECT_EQ(seen(mac.driver("bg-paste-files Mail /z.txt /a.txt /z.txt /m/b.txt")), pastedIntoMail);
  EXPECT_EQ(attachedFiles(mac, "Mail"), "z.txt a.txt z.txt b.txt");
}

TEST(bg_paste_files, takes_a_relative_path_from_the_current_directory) {
  TestMac mac(pastingDesk);
  EXPECT_EQ(seen(mac.driver("bg-paste-files Notes a.txt /b.txt ./c ../d ~/e")), pastedIntoNotes);
  EXPECT_EQ(mac.valueOf("Notes", "Body"),
            "hello /Users/ada/a.txt\n/b.txt\n/Users/ada/./c\n/Users/ada/../d\n/Users/ada/~/e");
}

TEST(bg_paste_files, takes_any_name) {
  TestMac mac(pastingDesk);
  const std::vector<std::string> names = {
      "/with blank.txt", "/100%25.txt", "/#?;&.txt", "/caf\u00e9",
      "/e\u0301",        "/\U0001F600", "/\n",       "/a:b\\c"};
  std::vector<std::string> arguments = {"bg-paste-files", "Notes"};
  std::string pasted = "hello ";
  for (const std::string& name : names) {
    arguments.push_back(name);
    pasted += (name == names.front() ? "" : "\n") + name;
  }

  EXPECT_EQ(seen(mac.driverWith(arguments)), pastedIntoNotes);
  EXPECT_EQ(mac.valueOf("Notes", "Body"), pasted);
}

TEST(bg_paste_files, takes_as_many_files_as_there_are) {
  TestMac mac(pastingDesk);
  std::vector<std::string> arguments = {"bg-paste-files", "Mail"};
  std::string attached;
  for (int i = 0; i < 500; ++i) {
    arguments.push_back("/folder/" + std::to_string(i));
    attached += (i == 0 ? "" : " ") + std::to_string(i);
  }

  const Result run = mac.driverWith(arguments);

  EXPECT_EQ(seen(run), pastedIntoMail);
  EXPECT_EQ(run.elapsed, 530'000);
  EXPECT_EQ(attachedFiles(mac, "Mail"), attached);
}

TEST(bg_paste_files, does_not_ask_whether_the_files_exist) {
  TestMac mac(pastingDesk);
  const Result run = mac.driver("bg-paste-files Notes /nowhere /a/../nowhere/");
  EXPECT_EQ(seen(run), pastedIntoNotes);
  for (const std::string& call : run.calls) EXPECT_NE(call, "streams.file-exists");
}

// What each step asks, and nothing else.
TEST(bg_paste_files, makes_exactly_these_calls) {
  TestMac mac(pastingDesk);

  const Result run = mac.driver("bg-paste-files Notes a.txt");

  EXPECT_EQ(run.calls, (std::vector<std::string>{"process.environment",
                                                 "quartz.create-source",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.environment",
                                                 "process.full-user-name",
                                                 "process.given-name",
                                                 "process.environment",
                                                 "windowserver.session",
                                                 "loader.open-library",
                                                 "loader.find-symbol",
                                                 "loader.find-symbol",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "process.current-directory",
                                                 "windowserver.session",
                                                 "workspace.applications-with-bundle",
                                                 "workspace.applications",
                                                 "ax.attribute",
                                                 "ax.attribute",
                                                 "ax.attribute",
                                                 "ax.attributes",
                                                 "windowserver.windows",
                                                 "loader.find-symbol",
                                                 "loop.uptime",
                                                 "private.ax-window",
                                                 "windowserver.windows",
                                                 "workspace.application",
                                                 "streams.list-directory",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "process.environment",
                                                 "loader.open-library",
                                                 "loader.find-symbol",
                                                 "loader.find-symbol",
                                                 "private.process-for-pid",
                                                 "private.post-record",
                                                 "loop.sleep",
                                                 "ax.attributes",
                                                 "loop.uptime",
                                                 "private.ax-window",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "pasteboard.change-count",
                                                 "pasteboard.items",
                                                 "pasteboard.change-count",
                                                 "pasteboard.clear",
                                                 "pasteboard.write-files",
                                                 "pasteboard.change-count",
                                                 "ax.attribute",
                                                 "ax.attribute",
                                                 "ax.attributes",
                                                 "ax.attributes",
                                                 "ax.attributes",
                                                 "ax.attributes",
                                                 "ax.attribute",
                                                 "quartz.create-keyboard-event",
                                                 "quartz.create-keyboard-event",
                                                 "quartz.create-keyboard-event",
                                                 "quartz.create-keyboard-event",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "pasteboard.change-count",
                                                 "process.environment",
                                                 "windowserver.session",
                                                 "quartz.post",
                                                 "loop.sleep",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "pasteboard.change-count",
                                                 "process.environment",
                                                 "windowserver.session",
                                                 "quartz.post",
                                                 "loop.sleep",
                                                 "process.environment",
                                                 "windowserver.session",
                                                 "quartz.post",
                                                 "loop.sleep",
                                                 "process.environment",
                                                 "windowserver.session",
                                                 "quartz.post",
                                                 "loop.sleep",
                                                 "loop.sleep",
                                                 "pasteboard.change-count",
                                                 "pasteboard.clear",
                                                 "pasteboard.write",
                                                 "loop.sleep",
                                                 "private.front-process",
                                                 "private.process-pid",
                                                 "process.environment",
                                                 "private.process-for-pid",
                                                 "private.post-record",
                                                 "loop.sleep"}));
}

}  // namespace paste_files_test
