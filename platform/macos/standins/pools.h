#pragma once

#include <functional>

namespace standins {

/// Leaves an object to the innermost pool, which tells when it goes.
void autoreleaseTelling(std::function<void()> tell);

}  // namespace standins
