#include <gtest/gtest.h>

#include "tests/support/inside.h"

/// The calls of short commands, all of them, in their exact order: a run does nothing it need not.
namespace driver {
namespace start_up_test {

using namespace testing_support;

using Calls = std::vector<std::string>;

constexpr const char* desk = R"(
    process 900
    image "/faces/oru.png"
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
)";

/// The calls of a start without any variable set.
const Calls startUp = {
    "process.environment",     // CU_WINDOW
    "quartz.create-source",    //
    "process.environment",     // ZENTROVE_COVER_GRACE
    "process.environment",     // ZENTROVE_COVER_OPERATING
    "process.environment",     // ZENTROVE_COVER_FACE
    "process.environment",     // ZENTROVE_COVER_NAME
    "process.full-user-name",  //
    "process.given-name",      //
    "process.environment",     // CU_CAPTURE_PID
};

Calls after(Calls calls, const Calls& more) {
  calls.insert(calls.end(), more.begin(), more.end());
  return calls;
}

TEST(start_up, reads_the_environment_in_a_fixed_order) {
  TestMac mac(desk);
  mac.driver("session");
  EXPECT_EQ(callsOf(mac, platform::Function::environment),
            (Calls{"process.environment \"CU_WINDOW\" -> -",
                   "process.environment \"ZENTROVE_COVER_GRACE\" -> -",
                   "process.environment \"ZENTROVE_COVER_OPERATING\" -> -",
                   "process.environment \"ZENTROVE_COVER_FACE\" -> -",
                   "process.environment \"ZENTROVE_COVER_NAME\" -> -",
                   "process.environment \"CU_CAPTURE_PID\" -> -"}));
}

TEST(start_up, with_all_variables_set_loads_the_face_and_asks_for_no_name) {
  TestMac mac(desk);
  const Result run = mac.driver("session", {{"CU_WINDOW", "Inbox"},
                                            {"ZENTROVE_COVER_GRACE", "2"},
                                            {"ZENTROVE_COVER_OPERATING", "1"},
                                            {"ZENTROVE_COVER_FACE", "/faces/oru.png"},
                                            {"ZENTROVE_COVER_NAME", "Countess"},
                                            {"CU_CAPTURE_PID", "900"}});
  EXPECT_EQ(run.calls, (Calls{"process.environment", "quartz.create-source", "process.environment",
                              "process.environment", "process.environment", "image.load",
                              "process.environment", "process.environment", "process.null-signal",
                              "windowserver.session"}));
}

TEST(start_up, without_a_full_name_asks_for_the_login_name) {
  TestMac mac("user \"\" login ada\napp Notes pid 41 frontmost\n");
  EXPECT_EQ(mac.driver("fly").calls,
            (Calls{"process.environment", "quartz.create-source", "process.environment",
                   "process.environment", "process.environment", "process.environment",
                   "process.full-user-name", "process.given-name", "process.login-name",
                   "process.environment"}));
}

TEST(start_up, happens_before_the_arguments_are_counted) {
  TestMac mac(desk);
  Calls calls = startUp;
  calls.pop_back();  // the service is not asked for
  EXPECT_EQ(mac.driverWith({}).calls, calls);
}

TEST(short_commands, make_only_the_calls_they_need) {
  TestMac mac(desk);
  EXPECT_EQ(mac.driver("fly").calls, startUp);
  EXPECT_EQ(mac.driver("session").calls, after(startUp, {"windowserver.session"}));
  EXPECT_EQ(mac.driver("permissions").calls,
            after(startUp, {"ax.trusted", "windowserver.capture-access"}));
  EXPECT_EQ(mac.driver("scene").calls,
            after(startUp, {"workspace.frontmost", "quartz.create-event"}));
  EXPECT_EQ(mac.driver("windows").calls, startUp);
}

TEST(short_commands, stop_looking_when_the_application_is_found) {
  TestMac mac(desk);
  EXPECT_EQ(mac.driver("windows pid:41").calls,
            after(startUp, {"workspace.application", "windowserver.windows"}));
  EXPECT_EQ(mac.driver("windows pid:99").calls, after(startUp, {"workspace.application"}));
  EXPECT_EQ(mac.driver("windows com.example.notes").calls,
            after(startUp, {"workspace.applications-with-bundle", "windowserver.windows"}));
  EXPECT_EQ(mac.driver("windows Notes").calls,
            after(startUp, {"workspace.applications-with-bundle", "workspace.applications",
                            "windowserver.windows"}));
  EXPECT_EQ(mac.driver("windows Nobody").calls,
            after(startUp, {"workspace.applications-with-bundle", "workspace.applications"}));
}

TEST(short_commands, take_no_time) {
  TestMac mac(desk);
  for (const char* commandLine : {"fly", "session", "permissions", "scene", "windows Notes"}) {
    EXPECT_EQ(mac.driver(commandLine).elapsed, 0) << commandLine;
  }
}

TEST(focus_release, makes_only_the_calls_it_needs) {
  TestMac mac(desk);
  EXPECT_EQ(mac.driver("focus-release 41 7").calls,
            after(startUp, {"loader.open-library", "loader.find-symbol", "loader.find-symbol",
                            "private.front-process", "private.process-pid", "loader.open-library",
                            "loader.find-symbol", "loader.find-symbol", "private.process-for-pid",
                            "private.post-record", "loop.sleep"}));
  EXPECT_EQ(mac.driver("focus-release 40 5").calls,
            after(startUp, {"loader.open-library", "loader.find-symbol", "loader.find-symbol",
                            "private.front-process", "private.process-pid"}));
  EXPECT_EQ(mac.driver("focus-release 41").calls, startUp);
}

TEST(bg_commands, that_go_no_further_make_only_the_calls_of_their_preconditions) {
  TestMac mac(desk);
  const Calls preconditions =
      after(startUp, {"windowserver.session", "loader.open-library", "loader.find-symbol",
                      "loader.find-symbol", "private.front-process", "private.process-pid"});
  EXPECT_EQ(mac.driver("bg-fly").calls, preconditions);
  EXPECT_EQ(mac.driver("bg-click Notes 1").calls, preconditions);
}

}  // namespace start_up_test
}  // namespace driver
