#pragma once

#include <string>

#include "simulator/desktop.h"

namespace companion {

/// One call as a line of JSON, keys sorted, without a line feed: when (in milliseconds), by which
/// process, the function, its arguments and its answer. Long texts are cut, and bytes that are no
/// text are an object with their hexadecimal digits, "hex".
std::string traceJson(const simulator::TraceEntry& entry, simulator::Pid client);

}  // namespace companion
