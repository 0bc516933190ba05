#pragma once

#include <string>
#include <utility>

namespace simulator {

/// How an event is posted.
enum class Route { privateRoute, publicRoute };

/// What came of one posting of an event.
struct Landing {
  bool landed = false;
  std::string outcome;  // why not, or what came of it
};

inline Landing refused(std::string why) { return {false, std::move(why)}; }

}  // namespace simulator
