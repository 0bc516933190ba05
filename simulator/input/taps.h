#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/event_tap.h"
#include "simulator/mac/mac.h"
#include "simulator/world/tap_line.h"

/// Event taps. Each event of the session goes past the taps that are enabled, from the head to the
/// tail, and then has its effect. One that filters holds the event, and all that come after it,
/// until it has said what becomes of it; one that listens is only told.
namespace simulator {

/// How long a tap that filters may think before the system disables it.
inline constexpr Microseconds tapPatience = 1'000'000;

/// Lets events of the session go past the taps, unless the login window is in front.
void takeUserInput(Mac& mac, std::vector<InputEvent> events);

/// The system disables all taps; they are told why, by the type of an event.
void disableTaps(Mac& mac, std::uint32_t notice);

/// A new tap of the client, disabled. None when the system gives none.
std::optional<std::int64_t> createTap(Mac& mac, const Client& client, tap::Place place,
                                      tap::Kind kind, std::uint64_t mask);

/// Whether the system would give such a tap: keys may be taken out of its mask, and then nothing
/// may be left of it; or it gives none that filters keys.
bool canMakeTap(const Mac& mac, tap::Kind kind, std::uint64_t mask);

void enableTap(Mac& mac, std::int64_t number);

/// Whether the tap is one that the system serves, as far as it says so.
bool isTapEnabled(const Mac& mac, std::int64_t number);

/// The permission that taps need is withdrawn: those that there are hear nothing more, and one that
/// filters holds all that comes to it.
void withdrawTaps(Mac& mac);

// Taps hear nothing more and nobody is told: they are disabled, or their ports are invalid.
void silenceTaps(Mac& mac);
void invalidateTaps(Mac& mac);

/// What a tap says of the event that waits for it. Of any other it says nothing.
void takeVerdict(Mac& mac, std::int64_t number, std::int64_t serial, bool pass);

/// When the tap that an event waits for will have been too slow; none while none waits.
std::optional<Microseconds> nextTapDeadline(const Mac& mac);

/// Disables the tap that has been too slow, tells it, and lets its event go on.
void expireTaps(Mac& mac);

/// Takes away the taps of a client that has gone; what waited for them goes on.
void dropTaps(Mac& mac, const Client& client);

}  // namespace simulator
