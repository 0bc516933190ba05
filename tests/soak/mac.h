#pragma once

#include "tests/soak/case.h"
#include "tests/soak/sketch.h"

namespace soak {

/// A Mac with these features: the lines of its world, and what is known of it.
struct GeneratedMac {
  std::vector<WorldLine> world;
  MacSketch sketch;
};

GeneratedMac someMac(Random random, const Features& features, const Aim* aim);

/// The process that has this id is none of the applications.
inline constexpr std::int64_t servicePid = 900;

}  // namespace soak
