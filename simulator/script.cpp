#include "simulator/script.h"

#include <algorithm>
#include <utility>

#include "simulator/world/random.h"
#include "simulator/world/reactions.h"

namespace simulator {

namespace {

bool comesBefore(const Scripted& one, const Scripted& other) {
  return std::pair(one.at, one.place) < std::pair(other.at, other.place);
}

/// Each line of the script has a chance of its own, so that what runs do changes no time of what
/// happens by itself.
void giveChances(World& world) {
  world.chance = Random(*world.seed).branch();
  for (Scripted& each : world.script) each.chance = Random(*world.seed + each.place).branch();
}

}  // namespace

void settleTimes(World& world) {
  if (world.seed) giveChances(world);
  for (Scripted& each : world.script) {
    if (each.latest > each.at) each.at = timeWithin(each.chance, {each.at, each.latest});
    each.latest = each.at;
  }
  std::stable_sort(world.script.begin(), world.script.end(), comesBefore);
}

void putAgain(World& world, std::size_t index) {
  const auto now = world.script.begin() + static_cast<std::ptrdiff_t>(index);
  now->at += timeWithin(now->chance, *now->every);
  if (now->times) --*now->times;
  const auto next = std::upper_bound(now + 1, world.script.end(), *now, comesBefore);
  std::rotate(now, now + 1, next);
}

void reseed(World& world, std::uint64_t seed) {
  world.seed = seed;
  if (!world.resumption) return;
  world.resumption->chance.emplace(seed);
  giveChances(world);
}

}  // namespace simulator
