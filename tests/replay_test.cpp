#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/simulated_run.h"

namespace {

using namespace testing_support;

constexpr const char* desk = R"(
    display 1 1440x900 scale 2
    app Browser pid 40 chromium frontmost
        window 5 "Start" at 0,30 size 600x500
    app Notes pid 41 bundle com.example.notes answers after 3ms
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 120,130 size 700x400 value "hello " focused
    at 300ms lock
)";

std::string tracedRun(const std::string& commandLine, Mode mode) {
  TestMac mac(simulator::parseWorld(desk), {}, mode);
  mac.driver(commandLine);
  std::string lines;
  for (const auto& entry : mac.desktop().trace()) lines += simulator::traceLine(entry) + "\n";
  return lines;
}

TEST(a_run, has_the_same_trace_every_time) {
  const std::string first = tracedRun("bg-click Notes 130 95", Mode::direct);

  EXPECT_EQ(tracedRun("bg-click Notes 130 95", Mode::direct), first);
}

TEST(a_run, has_the_same_trace_in_a_process_of_its_own) {
  EXPECT_EQ(tracedRun("bg-click Notes 130 95 right 2", Mode::forked),
            tracedRun("bg-click Notes 130 95 right 2", Mode::direct));
}

TEST(a_run, has_another_trace_with_other_arguments) {
  EXPECT_NE(tracedRun("bg-click Notes 130 95", Mode::direct),
            tracedRun("bg-click Notes 131 95", Mode::direct));
}

}  // namespace
