#include "capture/commands.h"

#include <gtest/gtest.h>

#include "main/globals.h"
#include "platform/json.h"
#include "tests/support/inside.h"
#include "tests/support/temporary_folder.h"

/// The runner as a long-lived process calls it: replies are returned, and the process goes on.
namespace {

using namespace testing_support;

constexpr const char* commandsDesk = R"(
    app Browser pid 40 frontmost
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,100 size 200x200
            AXCheckBox "Done" at 110,110 size 50x50
)";

driver::Reply replyOf(const driver::Arguments& arguments) {
  for (const driver::CaptureCommand& command : driver::captureCommands) {
    if (command.form.name == arguments[1]) return driver::captureCommand(command, arguments);
  }
  ADD_FAILURE() << "no command of the group: " << arguments[1];
  return {};
}

std::string replyTo(TestMac& mac, driver::Arguments arguments) {
  arguments.insert(arguments.begin(), "driver");
  return valueInside(mac, [&] { return json::write(replyOf(arguments)); });
}

TEST(captureCommand, returns_its_reply_and_writes_nothing) {
  TestMac mac(commandsDesk);

  std::string reply;
  const Result run = runInside(mac, [&] {
    reply = json::write(replyOf({"driver", "bg-click", "pid:41", "120", "120"}));
  });

  EXPECT_EQ(reply, R"({"changed":true,"ok":true,"via":"background","window":7})");
  EXPECT_EQ(seen(run), "0 ");
  EXPECT_EQ(run.elapsed, 584'000);
}

TEST(captureCommand, may_run_again_and_again) {
  TestMac mac(commandsDesk);
  const TemporaryFolder folder;
  std::string replies;

  runInside(mac, [&] {
    const driver::Arguments click = {"driver", "bg-click", "pid:41", "120", "120", "right"};
    const driver::Arguments probe = {"driver", "capture-probe"};
    const driver::Arguments missing = {"driver", "capture", "pid:99", folder.path("a.png")};
    for (const auto& arguments : {click, probe, missing, click}) {
      replies += json::write(replyOf(arguments)) + "\n";
    }
  });

  EXPECT_EQ(replies, R"({"changed":false,"ok":true,"via":"background","window":7}
{"ok":true}
{"ok":true,"running":false}
{"changed":false,"ok":true,"via":"background","window":7}
)");
}

TEST(captureCommand, keeps_focus_that_the_process_holds) {
  TestMac mac(commandsDesk);
  mac.desktop().mac().world.applications[1].focusByRecord = 7;

  const Result run = runInside(mac, [] {
    driver::globals().heldInputFocus[41] = {1, 7};
    replyOf({"driver", "bg-click", "pid:41", "120", "120"});
  });

  EXPECT_EQ(run.effects.find("focus"), std::string::npos);
  EXPECT_EQ(run.elapsed, 404'000);
}

TEST(captureCommand, refuses_to_hold_focus_by_itself) {
  TestMac mac(commandsDesk);

  EXPECT_EQ(replyTo(mac, {"bg-focus-hold", "pid:41"}),
            R"({"error":"input focus must be held by a capture session","ok":false})");
}

TEST(captureCommand, takes_no_picture_for_a_path_that_ends_early) {
  TestMac mac(commandsDesk);

  const Result run = runInside(mac, [] {
    replyOf({"driver", "capture", "pid:41", std::string("/tmp/a\0b", 8)});
  });

  EXPECT_EQ(seen(run), failure("cannot write \\/tmp\\/a\\u0000b"));
  EXPECT_TRUE(callsOf(mac, platform::Function::shareContent).empty());
}

TEST(captureCommand, probes_the_screen_whatever_the_argument) {
  TestMac mac(commandsDesk);

  EXPECT_EQ(replyTo(mac, {"capture-probe", "pid:41"}), R"({"ok":true})");
}

}  // namespace
