#include "tests/soak/generate.h"

#include <array>

#include "tests/soak/aims.h"
#include "tests/soak/command_lines.h"
#include "tests/soak/faults.h"
#include "tests/soak/happenings.h"
#include "tests/soak/living.h"
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

/// Puts runs that live on between the others.
void addLivingRuns(Random random, const MacSketch& mac, Microseconds duration,
                   std::vector<Step>& steps) {
  const std::size_t count = 1 + random.below(random.oneIn(3) ? 3 : 1);
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t place = random.below(steps.size() + 1);
    Step step = someLivingRun(random, mac, duration);
    steps.insert(steps.begin() + static_cast<std::ptrdiff_t>(place), std::move(step));
  }
  for (Step& step : steps) {
    if (step.environment.contains("CU_CAPTURE_PID") && random.oneIn(3)) {
      step.environment["CU_CAPTURE_PID"] = serviceName;
    }
  }
}

/// Something goes wrong, and at times something happens beside what the aim has happen.
void disturb(Random& random, Features& features) {
  features.faults = true;
  if (random.oneIn(2)) return;
  constexpr std::array happenings = {
      &Features::userClicks, &Features::userTypes, &Features::userCopies, &Features::session,
      &Features::signals,    &Features::system,    &Features::later,      &Features::serviceEnds};
  features.*random.pick(happenings) = true;
}

}  // namespace

Case generate(std::uint64_t seed) {
  Random random(seed);
  Features features = drawFeatures(random.branch());
  Random aiming = random.branch();
  const Aim* aim = features.aimed ? &someAim(aiming) : nullptr;
  if (aim != nullptr) addFeatures(*aim, features);
  if (aim != nullptr && aiming.oneIn(2)) disturb(aiming, features);
  if (features.serviceEnds) features.service = true;
  GeneratedMac mac = someMac(random.branch(), features, aim);
  Case one;
  one.steps = someSteps(random.branch(), mac.sketch);
  Microseconds duration = aSecond * static_cast<Microseconds>(one.steps.size());
  Random living = random.branch();
  // Some of what lives on looks after itself but once a second.
  if (features.living && living.oneIn(3)) duration *= 5;
  if (features.living) addLivingRuns(living, mac.sketch, duration, one.steps);
  Random faults = random.branch();
  if (features.faults) one.faults = someFaults(faults, mac.sketch);
  one.world = std::move(mac.world);
  Random latencies = random.branch();
  if (features.latencies) {
    one.world.insert(one.world.begin(), {"seed " + std::to_string(latencies.below(1'000'000))});
  }
  for (WorldLine& line : someHappenings(random.branch(), mac.sketch, duration)) {
    one.world.push_back(std::move(line));
  }
  Random turns = random.branch();
  const bool hasSeveralFlows = features.living || features.signals;
  if (features.turns && hasSeveralFlows) one.turns = turns.below(1'000'000);
  return one;
}

}  // namespace soak
