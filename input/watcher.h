#pragma once

#include <optional>

#include "main/arguments.h"
#include "platform/event_tap.h"
#include "platform/types.h"

namespace driver {

/// Writes a report of one event of the watcher's tap, if it is worth one. Ends the process with
/// status 1 when the report cannot be written.
void reportInput(const tap::Event& event);

/// Reports the user's own input, a line each, until standard input is closed; then the process ends
/// with status 0. With a process to watch over, reports tell whether the input touches it. Fails
/// when the system gives no tap.
[[noreturn]] void watchInput(std::optional<platform::Pid> target);

/// "watch-input": the same for the application that is named, if any. Fails when it does not run.
void watchInputCommand(const Arguments& arguments);

}  // namespace driver
