#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "platform/call.h"

/// Events as they are posted to a process, and what comes of one.
namespace simulator {

/// How an event is posted.
enum class Route { privateRoute, publicRoute };

/// What came of one posting of an event.
struct Landing {
  bool landed = false;
  std::string outcome;  // why not, or what came of it
};

inline Landing refused(std::string why) { return {false, std::move(why)}; }

/// The value of an event's field; the last write counts. Fields that only the private setter can
/// write are looked for among its writes alone. 0 when it was never written.
std::int64_t fieldOf(const platform::EventImage& event, quartz::Field field);

quartz::EventType typeOf(const platform::EventImage& event);

/// Whether a pointer event presses a button.
bool isPress(const platform::EventImage& event);

bool isKeyEvent(const platform::EventImage& event);

}  // namespace simulator
