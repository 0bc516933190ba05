#pragma once

#include <string>

#include "tests/support/simulated_run.h"

namespace testing_support {

/// The events posted on this Mac so far: two lines for each posting with all that is set in it, the
/// time since the Mac started.
///    40 ms private to 41: type 5 at -1,-1, in window -1,-1, button 0, source, no flags
///          0=2 1=0 3=0 7=3 40=41 51=7 58=40000000 91=7 92=7 | 42=1515475542
/// The button is the one the event was created with. Fields stand in the order of their numbers:
/// before the bar those written by the private setter, behind it those by the public one.
std::string postedEvents(TestMac& mac);

/// The times at which events were posted, in milliseconds, as "40 67 80".
std::string postingTimes(TestMac& mac);

/// The waits that were made, in order and in microseconds, as "40000 12000".
std::string waits(TestMac& mac);

}  // namespace testing_support
