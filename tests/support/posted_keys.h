#pragma once

#include <string>

#include "tests/support/simulated_run.h"

namespace testing_support {

/// The key events posted on this Mac so far, one line for each posting with all that is set in it,
/// the time since the Mac started:
///   340 ms public to 41: down 0 "hi" flags 0x0 42=1515475542
/// Behind the flags stand "source", where the event has one, and the fields that were written;
/// those by the private setter in brackets.
std::string postedKeys(TestMac& mac);

/// The same without texts, flags and fields: "down 56, down 36, up 36, up 56".
std::string keySteps(TestMac& mac);

}  // namespace testing_support
