#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "simulator/fault_outcomes.h"
#include "tests/support/channels.h"
#include "tests/support/simulated_run.h"

/// Runs of "lock-guard", for tests.
namespace testing_support {

/// A Mac with one display of 1440 x 900, and Notes in front, whose field "Body" takes what the user
/// types.
inline constexpr std::string_view guardedDesk = R"(
display 1 1440x900 scale 2
app Notes pid 41 bundle com.example.notes frontmost
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 focused
        AXCheckBox "Done" at 120,550 size 100x20
)";

/// That desk, and what happens there, one line each, as "2s user key a".
std::string deskWith(const std::vector<std::string>& happenings);

/// What can happen to that desk and to a process that lives on it, as the outcome of a call, beside
/// what `admissibleOutcomes` gives.
std::vector<simulator::Outcome> happeningsAt(const simulator::World& world);

/// Runs the guard inside this process, whatever the mode of the tests: it has several flows.
Result guard(TestMac& mac, const Environment& environment = {}, const Schedule& schedule = {});

/// The same on a new Mac.
Result guard(std::string_view world, const Environment& environment = {},
             const std::vector<std::string>& faults = {});

/// The guard's first line on that desk, and what `seen` gives of a guard that wrote it, and then
/// these lines, and ended with status 0.
inline constexpr std::string_view guardStarts = "{\"covers\":1,\"keepAwake\":true,\"ok\":true}\n";
std::string guardSays(const std::vector<std::string>& lines);

/// The line that says why the guard ends.
std::string endedBy(std::string_view reason, bool relocked = true);
inline constexpr const char* endedByGrace = "{\"by\":\"grace\",\"ok\":true}";

}  // namespace testing_support
