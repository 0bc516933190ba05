#include "main/ending.h"

#include <gtest/gtest.h>

#include "main/replies.h"
#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

constexpr const char* undoDesk = R"(
    app Notes pid 41 bundle com.example.notes frontmost
)";

TEST(undo, runs_the_newest_and_forgets_it) {
  TestMac mac(undoDesk);
  std::string order;
  runInside(mac, [&] {
    pushUndo([&] { order += "first "; });
    pushUndo([&] { order += "second "; });
    runNewestUndo();
    order += "| ";
    runPendingUndos();
    order += "| ";
    runPendingUndos();
  });
  EXPECT_EQ(order, "second | first | ");
}

TEST(undo, that_is_forgotten_never_runs) {
  TestMac mac(undoDesk);
  std::string order;
  runInside(mac, [&] {
    pushUndo([&] { order += "first "; });
    pushUndo([&] { order += "second "; });
    forgetNewestUndo();
    runPendingUndos();
  });
  EXPECT_EQ(order, "first ");
}

TEST(undo, runs_what_is_pending_newest_first_before_the_failure_is_written) {
  TestMac mac(undoDesk);
  const Result run = runInside(mac, [] {
    pushUndo([] { emit({{"ok", true}, {"undone", 1}}); });
    pushUndo([] { emit({{"ok", true}, {"undone", 2}}); });
    fail("stop");
  });
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.output,
            "{\"ok\":true,\"undone\":2}\n{\"ok\":true,\"undone\":1}\n"
            "{\"error\":\"stop\",\"ok\":false}\n");
  mac.takeViolations();  // more than one line, on purpose
}

TEST(undo, that_fails_itself_does_not_run_again) {
  TestMac mac(undoDesk);
  int runs = 0;
  const Result run = runInside(mac, [&] {
    pushUndo([&] { ++runs; });
    pushUndo([&] {
      ++runs;
      fail("undoing failed");
    });
    fail("stop");
  });
  EXPECT_EQ(seen(run), failure("undoing failed"));
  EXPECT_EQ(runs, 2);
}

TEST(undo, of_one_run_is_no_business_of_the_next) {
  TestMac mac(undoDesk);
  int runs = 0;
  runInside(mac, [&] { pushUndo([&] { ++runs; }); });
  EXPECT_EQ(seen(runInside(mac, [] { fail("stop"); })), failure("stop"));
  EXPECT_EQ(runs, 0);
}

}  // namespace
}  // namespace driver
