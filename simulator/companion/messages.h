#pragma once

#include <map>
#include <string>
#include <vector>

#include "base/datum.h"
#include "platform/call.h"
#include "simulator/companion/control.h"

/// What processes and a Mac send each other, taken apart. All throw MalformedDatum.
namespace companion {

/// The texts of a message from its `first` part on.
std::vector<std::string> texts(const driver::Datum::List& parts, std::size_t first);

/// "NAME=value" each, by name.
std::map<std::string, std::string> variables(const std::vector<std::string>& settings);

/// What a command to the Mac gives.
driver::Datum datumOf(const ControlAnswer& answer);

/// A function's number and its arguments.
platform::Call callOf(const driver::Datum::List& parts);

}  // namespace companion
