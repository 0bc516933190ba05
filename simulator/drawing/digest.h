#pragma once

#include <cstdint>

#include "simulator/drawing/picture.h"

namespace simulator {

/// A number that differs whenever the drawn pictures would differ. Draws nothing.
std::uint64_t digest(const Picture& picture);

}  // namespace simulator
