#include "tests/soak/generate.h"

#include "tests/soak/command_lines.h"
#include "tests/soak/happenings.h"
#include "tests/soak/mac.h"

namespace soak {

namespace {

constexpr Microseconds aSecond = 1'000'000;

std::vector<Step> someSteps(Random random, const MacSketch& mac) {
  std::vector<Step> steps;
  const std::size_t count = 1 + random.below(random.oneIn(5) ? 12 : 3);
  for (std::size_t i = 0; i < count; ++i) {
    Step step = someRun(random, mac);
    if (random.oneIn(3)) step.after = random.between(0, aSecond / 2);
    steps.push_back(std::move(step));
  }
  return steps;
}

}  // namespace

Case generate(std::uint64_t seed) {
  Random random(seed);
  const Features features = drawFeatures(random.branch());
  GeneratedMac mac = someMac(random.branch(), features);
  Case one;
  one.steps = someSteps(random.branch(), mac.sketch);
  const Microseconds duration = aSecond * static_cast<Microseconds>(one.steps.size());
  one.world = std::move(mac.world);
  for (WorldLine& line : someHappenings(random.branch(), mac.sketch, duration)) {
    one.world.push_back(std::move(line));
  }
  return one;
}

}  // namespace soak
