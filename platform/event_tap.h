#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "platform/quartz.h"
#include "platform/types.h"

/// Taps on the events of the login session, as the user makes them and others post them.
namespace tap {

using Tap = platform::Handle<struct TapTag>;

enum class Place { head, tail };

/// A tap that filters decides about each event; one that listens is only told.
enum class Kind { filters, listens };

/// What a tap is told of an event. Copied out of it: valid for good.
struct Event {
  std::uint32_t type = 0;  // quartz::EventType, or one of the two notices below
  platform::Point location;
  std::uint64_t flags = 0;
  std::int64_t sourceUserData = 0;
  std::int64_t deltaX = 0;
  std::int64_t deltaY = 0;
  std::int64_t keyCode = 0;
  std::int64_t targetProcess = 0;
};

/// Not events: the system has disabled the tap, because it was slow or because the user wanted so.
inline constexpr std::uint32_t disabledByTimeout = 0xFFFFFFFE;
inline constexpr std::uint32_t disabledByUserInput = 0xFFFFFFFF;

enum class Verdict { pass, swallow };

/// Called on the main flow, for one event after the other; the user's input waits for it. What a
/// tap that listens says does not matter.
using Handler = std::function<Verdict(const Event& event)>;

/// The mask of one event type.
constexpr std::uint64_t maskOf(quartz::EventType type) {
  return std::uint64_t{1} << static_cast<std::uint32_t>(type);
}

/// The mask of the null event, which never comes.
inline constexpr std::uint64_t noEvents = 1;

/// A tap on the session's events of the types in `mask`, not yet enabled. None when the system
/// gives none, or one that would not see keys.
std::optional<Tap> create(Place place, Kind kind, std::uint64_t mask, Handler handler);

/// Has the main flow serve the tap, in every mode of its loop.
void attach(const Tap& tap);

/// Enables it, or enables it again. Whether it took effect only `isEnabled` tells.
void enable(const Tap& tap);

/// True as long as the system can reach the tap and says that it is enabled. From any flow.
bool isEnabled(const Tap& tap);

/// Whether the system would give a tap of this kind and mask now: it makes one, at the tail, and
/// takes it away at once. One of `noEvents` holds nothing up. From any flow.
bool canBeMade(Kind kind, std::uint64_t mask);

}  // namespace tap
