#pragma once

#include <cstddef>
#include <cstdint>

namespace simulator {

/// The only source of chance. Its numbers, and all that is drawn from them, are defined here, so
/// that a seed means the same on every machine and with every compiler. For the same reason whoever
/// draws does so in statements of their own: in which order the arguments of a call are worked out,
/// each compiler chooses.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  /// Any number; SplitMix64.
  std::uint64_t next() {
    state_ += 0x9E3779B97F4A7C15;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EB;
    return mixed ^ (mixed >> 31);
  }

  /// From 0 to `count` - 1; `count` is above 0.
  std::size_t below(std::size_t count) { return static_cast<std::size_t>(next() % count); }

  /// Both ends included.
  std::int64_t between(std::int64_t least, std::int64_t most) {
    return least + static_cast<std::int64_t>(below(static_cast<std::size_t>(most - least + 1)));
  }

  bool oneIn(std::size_t count) { return below(count) == 0; }

  /// One of a list that is not empty. Borrowed.
  template <class List>
  const auto& pick(const List& list) {
    return list[below(list.size())];
  }

  /// What a stream made of it goes on with.
  std::uint64_t state() const { return state_; }

  /// A stream of its own: what it is used for does not disturb the others.
  Random branch() { return Random(next()); }

 private:
  std::uint64_t state_;
};

}  // namespace simulator
