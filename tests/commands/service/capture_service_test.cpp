#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

#include "tests/support/inside.h"
#include "tests/support/service_run.h"
#include "tests/support/temporary_folder.h"

namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900 scale 2
    process 900
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 90x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 120,130 size 700x400 value "hello "
    app Mail pid 42 bundle com.example.mail
        window 8 "Drafts" at 900,80 size 500x600
            AXButton "New" at 920,90 size 60x20
        window 9 "Outbox" at 940,180 size 400x550
)";

constexpr const char* notesShared =
    R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":41,"windowId":7})";
constexpr const char* draftsShared =
    R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":42,"windowId":8})";
constexpr const char* outboxShared =
    R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":42,"windowId":9})";
constexpr const char* done = R"({"ok":true})";
constexpr const char* clicked =
    R"({"ok":true,"reply":{"changed":true,"ok":true,"via":"background","window":7}})";

const std::string unavailable = "native screen sharing unavailable: ";

std::string inputFailure(const std::string& message) {
  return unavailable + R"(InputFailure(message: \")" + message + R"(\"))";
}

TEST(capture_service, tells_its_process_id_first_and_ends_with_its_input) {
  TestMac mac(desk);

  EXPECT_EQ(seen(serve(mac, {})), served(0, {}));
}

TEST(capture_service, opens_a_session_and_shares_its_window) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes")});

  EXPECT_EQ(seen(run), served(0, {notesShared}));
  EXPECT_EQ(run.effects,
            "    0 ms  sharing 41/7 start 640x480 with child windows as Zentrove Desk \u00b7 "
            "background operation in this window\n"
            "    0 ms  sharing 41/7 stop\n");
}

TEST(capture_service, refreshes_at_any_other_operation) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes"), sessionLine("refresh", "s"),
                                 sessionLine("", "s"), sessionLine("Close", "s")});

  EXPECT_EQ(seen(run), served(0, {notesShared, notesShared, notesShared, notesShared}));
}

TEST(capture_service, closes_a_session_and_forgets_its_name) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes"), sessionLine("close", "s"),
                                 openLine("s", "Mail"), sessionLine("close", "s")});

  EXPECT_EQ(seen(run), served(0, {notesShared, done, draftsShared, done}));
  EXPECT_TRUE(mac.world().sharings.empty());
}

TEST(capture_service, keeps_sessions_apart_with_their_scopes) {
  TestMac mac(desk);

  const Result run = serve(
      mac, {openLine("a", "Notes"), R"({"op":"open","session":"b","app":"Mail","window":"OUTBOX"})",
            sessionLine("refresh", "a"), sessionLine("refresh", "b"),
            R"({"op":"open","session":"c","app":"Mail","window":""})"});

  EXPECT_EQ(seen(run),
            served(0, {notesShared, outboxShared, notesShared, outboxShared, draftsShared}));
}

TEST(capture_service, takes_no_scope_from_its_own_environment) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Mail")}, {{{"CU_WINDOW", "Outbox"}}, {}, true, {}});

  EXPECT_EQ(seen(run), served(0, {draftsShared}));
}

TEST(capture_service, operates_in_the_scope_of_the_session_alone) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 130 95")},
                           {{{"CU_WINDOW", "Outbox"}}, {}, true, {}});

  EXPECT_EQ(seen(run), served(0, {notesShared, clicked}));
}

TEST(capture_service, ignores_what_it_does_not_know_and_scopes_that_are_no_text) {
  TestMac mac(desk);

  const Result run = serve(
      mac,
      {R"( {"session":"s","app":"Notes","op":"open","window":7,"args":3,"more":{"a":[null]}} )"});

  EXPECT_EQ(seen(run), served(0, {notesShared}));
}

TEST(capture_service, serves_a_last_line_that_is_not_ended) {
  TestMac mac(desk);
  const TemporaryFolder folder;
  const std::vector<std::string> words = {"driver", "capture-service", folder.path("lock")};

  const Result run = mac.record(words, {}, [&](std::size_t client) {
    mac.desktop().mac().clients[client]->input = openLine("s", "Notes");
    mac.desktop().mac().clients[client]->inputClosed = true;
    return runDirect(mac.desktop(), client, words);
  });

  EXPECT_EQ(seen(run), served(0, {notesShared}));
}

TEST(capture_service, any_text_names_a_session) {
  TestMac mac(desk);

  const Result run =
      serve(mac, {openLine("", "Notes"), openLine("\\u0000\\n \u00e9", "Mail"),
                  sessionLine("close", ""), sessionLine("refresh", "\\u0000\\u000a \u00e9")});

  EXPECT_EQ(seen(run), served(0, {notesShared, draftsShared, done, draftsShared}));
}

TEST(capture_service, runs_a_command_in_the_window_that_is_shared) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 130 95"),
                                 sessionLine("close", "s")});

  EXPECT_EQ(seen(run), served(0, {notesShared, clicked, done}));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello sent");
}

TEST(capture_service, commands_act_on_the_process_that_is_shared) {
  TestMac mac(std::string(desk) +
                  "    app Notes pid 44 bundle com.example.notes\n"
                  "        window 17 \"Inbox\" at 100,80 size 800x600\n",
              {"streams.read-line 2 before quit pid:41"});

  // Another one runs under the name by now.
  const Result run = serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-move Notes 130 95")});

  EXPECT_EQ(seen(run), served(0, {notesShared,
                                  R"({"ok":true,"reply":{"error":"target app is not running or is )"
                                  R"(hidden","ok":false}})"}));
}

TEST(capture_service, commands_name_the_application_as_the_session_does) {
  TestMac mac(desk);

  const Result run = serve(
      mac, {openLine("s", "com.example.notes"), commandLine("s", "bg-focus-hold com.example.notes"),
            commandLine("s", "capture com.example.notes /nowhere/a.png extra")});

  EXPECT_EQ(seen(run),
            failedService({notesShared, R"({"ok":true,"reply":{"focusPid":41,"focusWindow":7,)"
                                        R"("ok":true}})"},
                          "cannot write \\/nowhere\\/a.png"));
}

TEST(capture_service, a_refusal_of_a_command_is_a_reply) {
  TestMac mac(desk);

  const Result run =
      serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 10 20"),
                  commandLine("s", "bg-drag Notes 130 95 5 5"), sessionLine("refresh", "s")});

  EXPECT_EQ(
      seen(run),
      served(0, {notesShared,
                 R"({"ok":true,"reply":{"error":"no window of the app under the point",)"
                 R"("ok":false}})",
                 R"({"ok":true,"reply":{"error":"AppKit background drag is unsupported: native )"
                 R"(delivery raises the target window","ok":false}})",
                 notesShared}));
}

struct Ending {
  const char* name;
  std::string line;
  std::string message;
};

void PrintTo(const Ending& ending, std::ostream* out) { *out << ending.name; }

class capture_service_request : public testing::TestWithParam<Ending> {};

TEST_P(capture_service_request, ends_it_when_it_is_wrong) {
  TestMac mac(desk);

  const Result run = serve(mac, {openLine("s", "Notes"), GetParam().line, openLine("t", "Mail")});

  EXPECT_EQ(seen(run), failedService({notesShared}, GetParam().message));
  EXPECT_TRUE(mac.world().sharings.empty());
}

const std::string invalid = "invalid capture service request";
const std::string invalidCommand = "invalid shared capture command";

INSTANTIATE_TEST_SUITE_P(
    failures, capture_service_request,
    testing::Values(
        Ending{"list", "[]", invalid}, Ending{"without_op", R"({"session":"s"})", invalid},
        Ending{"op_no_text", R"({"op":7,"session":"s"})", invalid},
        Ending{"op_null", R"({"op":null,"session":"s"})", invalid},
        Ending{"without_session", R"({"op":"refresh"})", invalid},
        Ending{"session_no_text", R"({"op":"refresh","session":["s"]})", invalid},
        Ending{"no_utf8", "{\"op\":\"refresh\",\"session\":\"s\xC3\"}", invalid},
        Ending{"no_utf8_and_no_json", "\xFF", invalid},
        Ending{"open_without_app", R"({"op":"open","session":"t"})", "invalid capture session"},
        Ending{"open_app_no_text", R"({"op":"open","session":"t","app":41})",
               "invalid capture session"},
        Ending{"open_twice", openLine("s", "Mail"), "invalid capture session"},
        Ending{"not_running", openLine("t", "Paint"),
               inputFailure("capture target is not running: Paint")},
        Ending{"not_running_with_a_nul", openLine("t", "Paint\\u0000"),
               inputFailure("capture target is not running: Paint\\u0000")},
        Ending{"not_running_pid", openLine("t", "pid:77"),
               inputFailure("capture target is not running: pid:77")},
        Ending{"scope_without_window",
               R"({"op":"open","session":"t","app":"Mail","window":"sent"})",
               inputFailure("no scoped window to share")},
        Ending{"unknown_refresh", sessionLine("refresh", "x"), "unknown capture session"},
        Ending{"unknown_close", sessionLine("close", "S"), "unknown capture session"},
        Ending{"unknown_command", commandLine("x", "bg-click Notes 1 2"),
               "unknown capture session"},
        Ending{"args_missing", sessionLine("command", "s"), invalidCommand},
        Ending{"args_no_list", R"({"op":"command","session":"s","args":"capture"})",
               invalidCommand},
        Ending{"args_no_texts", R"({"op":"command","session":"s","args":["capture","Notes",7]})",
               invalidCommand},
        Ending{"args_too_few", R"({"op":"command","session":"s","args":["bg-click"]})",
               invalidCommand},
        Ending{"args_empty", R"({"op":"command","session":"s","args":[]})", invalidCommand},
        Ending{"args_other_app", commandLine("s", "bg-click Mail 1 2"), invalidCommand},
        Ending{"args_other_case", commandLine("s", "bg-click notes 1 2"), invalidCommand},
        Ending{"args_bundle", commandLine("s", "bg-click com.example.notes 1 2"), invalidCommand},
        Ending{"probe", commandLine("s", "capture-probe Notes"), invalidCommand},
        Ending{"other_command", commandLine("s", "bg-key Notes return"), invalidCommand},
        Ending{"service", commandLine("s", "capture-service Notes"), invalidCommand},
        Ending{"usage", commandLine("s", "bg-click Notes 1"),
               "usage: bg-click <app> <x> <y> [left|right] [count]"},
        Ending{"usage_capture", commandLine("s", "capture Notes"),
               "usage: capture <app> <out.png>"},
        Ending{"usage_motion", commandLine("s", "bg-scroll Notes 1 2 3"),
               "usage: bg-scroll <app> <x> <y> [dx|x2] [dy|y2]"},
        Ending{"button", commandLine("s", "bg-click Notes 1 2 middle"), "unsupported mouse button"},
        Ending{"number", commandLine("s", "bg-click Notes one 2"), "missing numeric arg 3"},
        Ending{"path_cut_short",
               R"({"op":"command","session":"s","args":["capture","Notes","\/tmp\/a\u0000b"]})",
               "cannot write \\/tmp\\/a\\u0000b"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST(capture_service, a_line_that_is_no_json_ends_it_with_the_parsers_words) {
  for (const std::string& line : {std::string("{"), std::string(), std::string("open"),
                                  std::string("{\"op\":\"refresh\",\"session\":\"s\"} x")}) {
    TestMac mac(desk);
    const Result run = serve(mac, {line});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output.find("{\"ok\":true,\"pid\":5000000}\n{\"error\":\"" + unavailable), 0U)
        << run.output;
  }
}

TEST(capture_service, needs_exactly_a_lock_path_whatever_the_preconditions) {
  TestMac mac(desk);
  const std::string usage = failure("usage: capture-service <private lock path>");

  EXPECT_EQ(seen(mac.driver("capture-service")), usage);
  EXPECT_EQ(seen(mac.driver("capture-service a b", {{"CU_CAPTURE_PID", "77"}})), usage);
}

TEST(capture_service, starts_where_other_commands_are_refused) {
  TestMac mac(std::string(desk) + "    session locked off-console\n");

  EXPECT_EQ(seen(serve(mac, {}, {{{"CU_CAPTURE_PID", "77"}}, {}, true, {}})), served(0, {}));
}

TEST(capture_service, is_refused_where_another_holds_the_lock) {
  TestMac mac(desk);
  const TemporaryFolder folder;
  const std::string path = folder.path("lock");
  const int other = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  ASSERT_EQ(flock(other, LOCK_EX | LOCK_NB), 0);

  const Service service{{}, {}, true, path};
  EXPECT_EQ(seen(serve(mac, {}, service)), failure("capture service already running"));

  close(other);
  EXPECT_EQ(seen(serve(mac, {}, service)), "0 {\"ok\":true,\"pid\":5000001}\n");
}

TEST(capture_service, is_refused_where_there_can_be_no_lock) {
  TestMac mac(desk);
  const TemporaryFolder folder;
  const std::string refused = failure("capture service already running");

  EXPECT_EQ(seen(serve(mac, {}, {{}, {}, true, folder.path("none/lock")})), refused);
  EXPECT_EQ(seen(serve(mac, {}, {{}, {}, true, folder.path("")})), refused);
  EXPECT_EQ(seen(serve(mac, {}, {{}, {}, true, folder.path("\xFF")})), refused);
}

TEST(capture_service, refuses_to_share_what_the_system_does_not_let_it) {
  TestMac mac(std::string(desk) + "    deny screen-recording\n");

  EXPECT_EQ(seen(serve(mac, {openLine("s", "Notes")})),
            failedService({}, unavailable +
                                  "Error Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain "
                                  "Code=-3801 \\\"The user declined TCCs for application, window, "
                                  "display capture\\\""));
}

TEST(capture_service, refuses_a_window_whose_number_no_window_can_have) {
  TestMac beyond(
      "app Notes pid 41\n    window 7 \"Inbox\" at 0,0 size 900x700 listed as 4294967296");
  EXPECT_EQ(seen(serve(beyond, {openLine("s", "Notes")})),
            failedService({}, "window number is out of range"));

  TestMac below("app Notes pid 41\n    window 7 \"Inbox\" at 0,0 size 900x700 listed as -1");
  EXPECT_EQ(seen(serve(below, {openLine("s", "Notes")})),
            failedService({}, "window number is out of range"));
}

TEST(capture_service, a_locked_screen_between_requests_ends_it) {
  TestMac refreshed(desk, {"streams.read-line 2 before lock"});
  EXPECT_EQ(seen(serve(refreshed, {openLine("s", "Notes"), sessionLine("refresh", "s")})),
            failedService({notesShared}, inputFailure("the Mac is locked or not on console")));

  TestMac commanded(desk, {"streams.read-line 2 before leave console"});
  EXPECT_EQ(
      seen(serve(commanded, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 1 2")})),
      failedService({notesShared},
                    "the Mac is locked or not on console; background input is unavailable"));
}

TEST(capture_service, a_locked_screen_inside_a_command_is_its_last_line) {
  TestMac mac(desk, {"private.post 2 before lock"});

  const Result run = serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 130 95"),
                                 sessionLine("refresh", "s")});

  EXPECT_EQ(seen(run),
            served(1, {notesShared,
                       R"({"error":"the screen locked; input was withheld from the lock screen",)"
                       R"("locked":true,"ok":false})"}));
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "hello ");
}

TEST(capture_service, a_target_that_has_quit_ends_it) {
  TestMac mac(desk, {"streams.read-line 2 before quit Notes"});

  EXPECT_EQ(seen(serve(mac, {openLine("s", "Notes"), sessionLine("refresh", "s")})),
            failedService({notesShared}, inputFailure("capture target has exited")));
}

TEST(capture_service, follows_the_target_to_another_window) {
  // The user's click brings the other window to the front.
  TestMac mac(desk, {"streams.read-line 2 before user click 950,720"});

  const Result run =
      serve(mac, {openLine("s", "Mail"), sessionLine("refresh", "s"), sessionLine("refresh", "s")});

  EXPECT_EQ(seen(run), served(0, {draftsShared, outboxShared, outboxShared}));
  EXPECT_EQ(run.effects,
            "    0 ms  sharing 42/8 start 500x600 with child windows as Zentrove Desk \u00b7 "
            "background operation in this window\n"
            "    0 ms  happening user click 950,720: Mail: clicked AXWindow \"Outbox\", which does "
            "nothing\n"
            "    0 ms  sharing 42/9 move here\n"
            "    0 ms  sharing 42/9 configure 400x550 with child windows as Zentrove Desk \u00b7 "
            "background operation in this window\n"
            "    0 ms  sharing 42/9 stop\n");
}

TEST(capture_service, counts_the_time_outs_of_a_hung_application_per_request) {
  TestMac mac(desk, {"streams.read-line 2 before hang Notes"});

  const Result run = serve(mac, {openLine("s", "Notes"), commandLine("s", "bg-click Notes 300 500"),
                                 commandLine("s", "bg-click Notes 300 500")});

  // Each click waits for two messages and asks for no more.
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.elapsed, 2 * (2 * 6'000'000 + 984'000));
}

}  // namespace
