#pragma once

#include "main/arguments.h"

namespace driver {

/// "capture-service": holds the lock at a path and serves requests, a line of JSON each, from
/// standard input until its end. Any failure ends it with status 1.
void captureServiceCommand(const Arguments& arguments);

}  // namespace driver
