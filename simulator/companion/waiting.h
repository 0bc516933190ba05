#pragma once

#include <functional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

namespace companion {

/// What `wait` waits for, and how long at most.
struct Wait {
  simulator::Microseconds length = 0;
  /// Whether it has come; without it the whole length passes.
  std::function<bool(const simulator::World& world)> isMet = {};
  std::string what = {};  // for whoever waited in vain: "Mail shows \"Sent\""
  /// And what is there instead: "Mail showed Send, \"Not yet sent\"".
  std::function<std::string(const simulator::World& world)> instead = {};
};

/// Reads the words behind `wait`. Throws Failure for words that make no sense or an application
/// that there has never been, and WorldError for a time that is none.
Wait readWait(const std::vector<std::string>& words, const simulator::World& world);

}  // namespace companion
