#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

#include "tests/support/guarded.h"

// Whatever ends the guard once its first line is out, the screen is locked before it ends, and
// before any line that says so; the one exception is the user's return while grace lasts.

namespace {

using testing_support::deskWith;
using testing_support::endedBy;
using testing_support::endedByGrace;
using testing_support::Environment;
using testing_support::failure;
using testing_support::guard;
using testing_support::guardedDesk;
using testing_support::guardSays;
using testing_support::guardStarts;
using testing_support::Mode;
using testing_support::Result;
using testing_support::seen;
using testing_support::TestMac;

using Function = platform::Function;

/// The calls of a function, by their places in the trace.
std::vector<std::size_t> placesOf(const TestMac& mac, Function function) {
  std::vector<std::size_t> places;
  const auto& trace = mac.desktop().trace();
  for (std::size_t i = 0; i < trace.size(); ++i) {
    if (trace[i].call.function == function) places.push_back(i);
  }
  return places;
}

struct Ending {
  const char* happening;
  const char* by;
};

constexpr Ending endings[] = {
    {"user key a", "user"},        {"user click 300,300", "user"},  {"user scroll 0,1", "user"},
    {"user move 300,300", "user"}, {"signal 15", "signal"},         {"signal 2", "signal"},
    {"signal 1", "signal"},        {"request termination", "quit"}, {"close input", "run"},
    {"end-loop", "loop"},
};

TEST(guard_end, locks_first_on_every_way_out) {
  for (const Ending& ending : endings) {
    TestMac mac(deskWith({std::string("3s ") + ending.happening}), {}, Mode::direct);
    const Result run = guard(mac);
    EXPECT_EQ(seen(run), guardSays({endedBy(ending.by)})) << ending.happening;
    EXPECT_EQ(run.elapsed, 3'500'000) << ending.happening;
    const auto locks = placesOf(mac, Function::lockScreen);
    const auto writes = placesOf(mac, Function::writeOutput);
    const auto exits = placesOf(mac, Function::exit);
    ASSERT_EQ(locks.size(), 1U) << ending.happening;
    ASSERT_EQ(writes.size(), 2U) << ending.happening;
    ASSERT_EQ(exits.size(), 1U) << ending.happening;
    EXPECT_LT(locks[0], writes[1]) << ending.happening;
    EXPECT_LT(writes[1], exits[0]) << ending.happening;
    EXPECT_TRUE(mac.world().session.locked.value_or(false)) << ending.happening;
    EXPECT_TRUE(mac.world().covers.empty()) << ending.happening;
  }
}

TEST(guard_end, tells_the_caller_when_the_lock_failed) {
  for (const Ending& ending : endings) {
    TestMac mac(deskWith({std::string("3s ") + ending.happening}),
                {"private.lock-screen 1+ error -600"}, Mode::direct);
    EXPECT_EQ(seen(guard(mac)), guardSays({endedBy(ending.by, false)})) << ending.happening;
    EXPECT_EQ(placesOf(mac, Function::lockScreen).size(), 1U) << ending.happening;
  }
}

// Two things that end it, together or apart: never more than two lines, and both locked first.
TEST(guard_end, of_two_kinds_at_once_is_told_as_it_must_be) {
  for (const Ending& first : endings) {
    for (const Ending& second : endings) {
      for (const char* when : {"3s", "3100ms", "3499ms", "3500ms"}) {
        TestMac mac(deskWith({std::string("3s ") + first.happening,
                              std::string(when) + " " + second.happening}),
                    {}, Mode::direct);
        const Result run = guard(mac);
        const std::string what =
            std::string(first.happening) + ", " + when + " " + second.happening;
        EXPECT_EQ(run.status, 0) << what;
        const auto lines = std::count(run.output.begin(), run.output.end(), '\n');
        EXPECT_LE(lines, 3) << what;
        if (first.by != std::string("user")) {
          // Input's end comes by way of the reader: what happens at the same time overtakes it.
          const bool isOvertaken = when == std::string("3s") && (first.by == std::string("run") ||
                                                                 second.by == std::string("user"));
          const std::string told = run.output.substr(guardStarts.size());
          EXPECT_TRUE(isOvertaken || told == endedBy(first.by) + "\n") << what;
        } else if (second.by != std::string("user") && when == std::string("3100ms")) {
          EXPECT_EQ(seen(run), guardSays({endedBy("user"), endedBy(second.by)})) << what;
        }
        EXPECT_TRUE(mac.world().session.locked.value_or(false)) << what;
      }
    }
  }
}

TEST(guard_end, by_the_same_signal_twice_is_one_line) {
  for (const char* number : {"15", "2", "1"}) {
    const std::string signal = std::string(" signal ") + number;
    const Result run = guard(deskWith({"1s" + signal, "1s" + signal, "1200ms" + signal}));
    EXPECT_EQ(seen(run), guardSays({endedBy("signal")}));
    EXPECT_EQ(run.elapsed, 1'500'000);
  }
  EXPECT_EQ(seen(guard(deskWith({"1s signal 15", "1s signal 2", "1s signal 1"}))),
            guardSays({endedBy("signal")}));
}

TEST(guard_end, after_the_grace_line_may_add_a_line_and_then_locks) {
  // The signal waits behind the key: the guard has said "grace" and has not ended yet.
  const Result run =
      guard(deskWith({"3s user key a", "3s signal 15"}), {{"ZENTROVE_COVER_GRACE", "10"}});
  EXPECT_EQ(seen(run), guardSays({endedByGrace, endedBy("signal")}));
}

// Whoever wants to be rid of a guard that waits for the directory service gets rid of it.
TEST(guard_end, by_a_signal_before_anything_is_covered_is_that_of_any_process) {
  for (const auto& [number, status] :
       {std::pair("15", 128 + 15), std::pair("2", 128 + 2), std::pair("1", 128 + 1)}) {
    TestMac mac(guardedDesk, {std::string("process.tool-output 1 before signal ") + number},
                Mode::direct);
    EXPECT_EQ(seen(guard(mac)), std::to_string(status) + " ");
    EXPECT_EQ(placesOf(mac, Function::showPanel), std::vector<std::size_t>());
  }
}

TEST(guard_end, by_a_signal_once_it_covers_is_after_its_first_line) {
  for (const char* call : {"windowserver.shielding-level", "cover.show", "tap.create"}) {
    TestMac mac(guardedDesk, {std::string(call) + " 1 before signal 15"}, Mode::direct);
    EXPECT_EQ(seen(guard(mac)), guardSays({endedBy("signal")})) << call;
  }
}

/// Each call that the guard makes before it watches, with something that happens just before it.
TEST(guard_end, at_any_instant_of_the_start_locks_or_never_starts) {
  const std::size_t calls = [] {
    TestMac mac(guardedDesk, {}, Mode::direct);
    guard(mac);
    return placesOf(mac, Function::nextItem).front();
  }();
  for (const Ending& ending : endings) {
    for (const Environment& environment :
         {Environment{}, Environment{{"ZENTROVE_COVER_GRACE", "10"}}}) {
      for (std::size_t k = 1; k <= calls; ++k) {
        const std::string fault = "any " + std::to_string(k) + " before " + ending.happening;
        TestMac mac(deskWith({"20s user key a"}), {fault}, Mode::direct);
        const Result run = guard(mac, environment);
        const bool isLocked = mac.world().session.locked.value_or(false);
        const bool hasStarted = run.output.starts_with(guardStarts);
        // Before its signals are handled a signal ends it like any process.
        const bool isDead = run.status > 128;
        EXPECT_TRUE(isDead ? !hasStarted : isLocked && run.status == 0) << fault << seen(run);
      }
    }
  }
}

TEST(guard_end, without_a_reader_locks_all_the_same) {
  for (const Ending& ending : endings) {
    for (const char* reader : {"close output", "stall output"}) {
      TestMac mac(deskWith({std::string("2s ") + reader, std::string("3s ") + ending.happening}),
                  {}, Mode::direct);
      const Result run = guard(mac);
      EXPECT_EQ(run.status, 0) << ending.happening << reader;
      EXPECT_EQ(run.output, guardStarts) << ending.happening << reader;
      EXPECT_TRUE(mac.world().session.locked.value_or(false)) << ending.happening << reader;
    }
  }
}

struct FailedWrites {
  const char* outcome;
  std::string output;  // what the reader gets all the same
};

// Each write refused by itself, and from there on; and a reader that goes just before it.
TEST(guard_end, survives_every_write_that_fails_and_writes_whole_lines_only) {
  const std::string first(guardStarts);
  const std::string last = endedBy("user") + "\n";
  for (const auto& [outcome, output] : {FailedWrites{"1 refused", last},
                                        {"2 refused", first},
                                        {"3 refused", first + last},
                                        {"1+ refused", ""},
                                        {"2+ refused", first},
                                        {"1 before close output", ""},
                                        {"2 before close output", first},
                                        {"1 before stall output", ""},
                                        {"2 before stall output", first}}) {
    TestMac mac(deskWith({"3s user key a"}), {std::string("streams.write-output ") + outcome},
                Mode::direct);
    const Result run = guard(mac);
    EXPECT_EQ(seen(run), "0 " + output) << outcome;
    EXPECT_TRUE(mac.world().session.locked.value_or(false)) << outcome;
    const bool isStalled = std::string_view(outcome).ends_with("stall output");
    EXPECT_EQ(run.elapsed, isStalled ? 3'750'000 : 3'500'000) << outcome;
  }
}

// A reader that takes nothing must not keep the tap from watching.
TEST(guard_end, does_not_wait_for_a_reader_that_stalls) {
  TestMac mac(deskWith({"1ms user key a"}), {"streams.write-output 1 before stall output"},
              Mode::direct);
  const Result run = guard(mac);
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.output, "");
  EXPECT_EQ(mac.valueOf("Notes", "Body"), "");
  EXPECT_TRUE(mac.world().session.locked.value_or(false));
  mac.takeViolations();
}

TEST(guard_end, during_grace_without_a_reader_is_as_quick) {
  TestMac mac(deskWith({"2s stall output", "3s user key a"}), {}, Mode::direct);
  const Result run = guard(mac, {{"ZENTROVE_COVER_GRACE", "10"}});
  EXPECT_EQ(run.status, 0);
  EXPECT_EQ(run.elapsed, 3'250'000);
  EXPECT_FALSE(mac.world().session.locked.value_or(false));
}

TEST(guard_end, comes_from_a_tap_that_is_disabled_at_any_event) {
  for (const char* notice : {"disable taps", "disable taps timeout"}) {
    for (const char* deed : {"key a", "click 300,300", "scroll 0,1", "move 300,300"}) {
      const std::string user = std::string("user ") + deed;
      const Result before =
          guard(deskWith({std::string("1s ") + notice, "1s " + user, "2s user key z"}));
      EXPECT_EQ(seen(before), guardSays({endedBy("user")})) << notice << deed;
      const Result after =
          guard(deskWith({"1s " + user, std::string("1s ") + notice, "1100ms user key z"}));
      EXPECT_EQ(seen(after), guardSays({endedBy("user")})) << notice << deed;
    }
  }
}

}  // namespace
