#include <gtest/gtest.h>
#include <signal.h>

#include "mac.h"

// A guard to which the system gives no more memory: each allocation after its first line fails, by
// itself and with all that follow it, until it gives up. It locks all the same.

namespace joined {
namespace {

constexpr const char* desk = R"(
display 1 1440x900 scale 1
app Notes pid 41 bundle com.example.notes frontmost
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 focused
at 1s connect display 2 800x600 at 1440,0
at 3s user key a
)";

struct Run {
  Finished guard;
  bool isShortOfMemory = false;
  bool isLocked = false;
};

/// What ends a guard, after its grace.
enum class End { user, signal, input };

/// Runs a guard that is told a word, and in which this allocation fails.
Run guardWithout(const std::string& allocation, End end) {
  const ServedMac mac(desk);
  Environment environment = mac.environment({{"ZENTROVE_COVER_GRACE", "2"}});
  environment["LD_PRELOAD"] = SHORT_OF_MEMORY_LIBRARY;
  environment["FAILING_ALLOCATION"] = allocation;
  Process guard(driverCommand({"lock-guard"}), environment);
  EXPECT_EQ(guard.readLine(), "{\"covers\":1,\"keepAwake\":true,\"ok\":true}") << allocation;
  guard.offer("operating\n");  // it may be dying already
  if (end == End::user) mac.command({"advance", "5s"});
  if (end == End::signal) guard.signal(SIGTERM);
  if (end == End::input) guard.closeInput();
  Run run;
  run.guard = guard.finish();
  run.isShortOfMemory = run.guard.errors.find("short of memory") != std::string::npos;
  run.isLocked = mac.command({"state"}).output.find("\"locked\":true") != std::string::npos;
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

TEST(guard_without_memory, locks_before_it_ends) {
  for (const End end : {End::user, End::signal, End::input}) EXPECT_GT(deathsAt(end, ""), 50);
  EXPECT_GT(deathsAt(End::user, "+"), 50);
}

}  // namespace
}  // namespace joined
