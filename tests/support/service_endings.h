#pragma once

#include <functional>
#include <string>

#include "tests/support/simulated_run.h"

/// What ends a capture service in mid-session.
namespace testing_support {

/// Runs the whole session of `service_desk.h` with something happening just before each of its
/// calls in turn, until a check fails.
void atEveryCall(const std::string& happening,
                 const std::function<void(const TestMac&, const Result&)>& check);

/// Whether a service wrote what it writes in the whole session, or only the beginning.
bool isPrefixOfSession(const std::string& output);

}  // namespace testing_support
