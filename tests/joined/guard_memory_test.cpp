#include <gtest/gtest.h>
#include <signal.h>

#include "guarded.h"

// A guard to which the system gives no more memory: each allocation after its first line fails, by
// itself and with all that follow it, until it gives up. It locks all the same.

namespace joined {
namespace {

const std::string happenings =
    "at 1s connect display 2 800x600 at 1440,0\n"
    "at 3s user key a\n";

struct Run {
  Finished guard;
  bool isShortOfMemory = false;
  bool isLocked = false;
};

/// What ends a guard, after its grace.
enum class End { user, signal, input };

/// Runs a guard that is told a word, and in which this allocation fails.
Run guardWithout(const std::string& allocation, End end) {
  SCOPED_TRACE(allocation);
  Guarded guard(desk + happenings, {{"ZENTROVE_COVER_GRACE", "2"},
                                    {"LD_PRELOAD", SHORT_OF_MEMORY_LIBRARY},
                                    {"FAILING_ALLOCATION", allocation}});
  guard.process().offer("operating\n");  // it may be dying already
  if (end == End::user) guard.mac().tell({"advance", "5s"});
  if (end == End::signal) guard.process().signal(SIGTERM);
  if (end == End::input) guard.process().closeInput();
  Run run;
  run.guard = guard.process().finish();
  run.isShortOfMemory = run.guard.errors.find("short of memory") != std::string::npos;
  // A guard without memory may go before the login window shows, but not before it asks for it.
  guard.mac().tell({"advance", "400ms"});
  run.isLocked = guard.isLocked();
  return run;
}

/// Lets each allocation fail until there is none left to fail. How many of these guards died.
int deathsAt(End end, const std::string& onwards) {
  int deaths = 0;
  for (int number = 1;; ++number) {
    const std::string allocation = std::to_string(number) + onwards;
    const Run run = guardWithout(allocation, end);
    const bool isDead = run.guard.status == 128 + SIGABRT;
    EXPECT_TRUE(run.isLocked) << allocation << ": " << seen(run.guard);
    EXPECT_TRUE(isDead || run.guard.status == 0) << allocation << ": " << seen(run.guard);
    if (!run.isShortOfMemory) return deaths;
    deaths += isDead ? 1 : 0;
  }
}

TEST(guard_without_memory, locks_before_the_user_ends_it) {
  EXPECT_GT(deathsAt(End::user, ""), 50);
}

TEST(guard_without_memory, locks_before_a_signal_ends_it) {
  EXPECT_GT(deathsAt(End::signal, ""), 50);
}

TEST(guard_without_memory, locks_before_the_end_of_its_input_ends_it) {
  EXPECT_GT(deathsAt(End::input, ""), 50);
}

TEST(guard_without_memory, locks_when_all_that_follows_fails_too) {
  EXPECT_GT(deathsAt(End::user, "+"), 50);
}

}  // namespace
}  // namespace joined
