#pragma once

#include <sys/types.h>

namespace companion {

/// Whether any process that this one has started, or that one of these has, is at work: running,
/// ready to run, or about to be.
bool isAnyBelowAtWork();

}  // namespace companion
