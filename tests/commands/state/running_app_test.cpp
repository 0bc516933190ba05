#include <gtest/gtest.h>

#include "main/state_queries.h"
#include "tests/support/inside.h"

namespace driver {
namespace running_app_test {

using namespace testing_support;

constexpr const char* desk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
    app Notes pid 42 bundle com.example.other
    app Copy pid 43 bundle com.example.notes
    app tool pid 44 unbundled
    app "pid:abc" pid 45 bundle com.example.abc
    app com.example.notes pid 46 bundle com.example.named
    app Ghost pid 47 unbundled unnamed
    app "Caf\u{E9}" pid 48 bundle com.example.cafe
)";

/// The process that a reference names; 0 for none.
platform::Pid pidOf(const std::string& reference) {
  TestMac mac(desk);
  return valueInside(mac, [&] {
    const auto app = runningApp(reference);
    return app ? app->pid : 0;
  });
}

TEST(runningApp, takes_a_process_id) {
  EXPECT_EQ(pidOf("pid:41"), 41);
  EXPECT_EQ(pidOf("pid:47"), 47);
  EXPECT_EQ(pidOf("pid:+41"), 41);
  EXPECT_EQ(pidOf("pid:0041"), 41);
}

TEST(runningApp, tries_nothing_else_for_a_process_that_does_not_run) {
  TestMac mac(desk);
  for (const char* reference : {"pid:99", "pid:0", "pid:-41", "pid:2147483647"}) {
    const Result run = runInside(mac, [&] { EXPECT_FALSE(runningApp(reference).has_value()); });
    EXPECT_EQ(run.calls, (std::vector<std::string>{"workspace.application"})) << reference;
  }
}

TEST(runningApp, takes_a_pid_that_does_not_parse_for_an_identifier_and_then_a_name) {
  EXPECT_EQ(pidOf("pid:abc"), 45);
  TestMac mac(desk);
  for (const char* reference :
       {"pid:", "pid:abc", "pid: 41", "pid:41 ", "pid:0x29", "pid:4294967337", "PID:41"}) {
    const Result run = runInside(mac, [&] { runningApp(reference); });
    EXPECT_EQ(run.calls, (std::vector<std::string>{"workspace.applications-with-bundle",
                                                   "workspace.applications"}))
        << reference;
  }
}

TEST(runningApp, takes_the_first_application_with_the_bundle_identifier) {
  EXPECT_EQ(pidOf("com.example.notes"), 41);
  EXPECT_EQ(pidOf("com.example.other"), 42);
}

TEST(runningApp, takes_the_first_application_with_the_name) {
  EXPECT_EQ(pidOf("Notes"), 41);
  EXPECT_EQ(pidOf("Copy"), 43);
  EXPECT_EQ(pidOf("tool"), 44);
}

TEST(runningApp, compares_identifiers_and_names_exactly) {
  for (const char* reference : {"notes", "NOTES", "Note", "Notes ", " Notes", "com.example.Notes",
                                "com.example", "Ghost", "41", ""}) {
    EXPECT_EQ(pidOf(reference), 0) << "'" << reference << "'";
  }
}

TEST(runningApp, takes_a_composed_and_a_decomposed_letter_for_the_same) {
  EXPECT_EQ(pidOf("Caf\u00E9"), 48);
  EXPECT_EQ(pidOf("Cafe\u0301"), 48);
  EXPECT_EQ(pidOf("Cafe"), 0);
}

TEST(runningApp, does_not_find_an_application_that_has_quit) {
  TestMac mac(std::string(desk) + "    at 0ms quit tool\n");
  runInside(mac, [] {
    EXPECT_FALSE(runningApp("tool").has_value());
    EXPECT_FALSE(runningApp("pid:44").has_value());
  });
}

}  // namespace running_app_test
}  // namespace driver
