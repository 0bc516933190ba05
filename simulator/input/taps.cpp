#include "simulator/input/taps.h"

#include <algorithm>
#include <utility>

#include "simulator/input/user_input.h"

namespace simulator {

namespace {

constexpr std::int64_t noVerdict = 0;  // the serial of what nothing waits for

constexpr std::uint64_t keys =
    tap::maskOf(quartz::EventType::keyDown) | tap::maskOf(quartz::EventType::keyUp);

Tap* findTap(Mac& mac, std::int64_t number) {
  auto& taps = mac.tapLine.taps;
  const auto found = std::find_if(taps.begin(), taps.end(),
                                  [&](const Tap& each) { return each.number == number; });
  return found == taps.end() ? nullptr : &*found;
}

/// What the system leaves of a mask.
std::uint64_t grantedMask(const World& world, std::uint64_t mask) {
  return world.keysInTapsAllowed ? mask : mask & ~keys;
}

void tell(Mac& mac, const Tap& tap, std::int64_t serial, const tap::Event& event) {
  for (const auto& client : mac.clients) {
    if (!client || client->pid != tap.owner || client->exited) continue;
    client->items.push_back({platform::ItemKind::tapEvent, tap.number, serial, event});
  }
}

bool isKey(const tap::Event& event) {
  const auto type = static_cast<quartz::EventType>(event.type);
  return type == quartz::EventType::keyDown || type == quartz::EventType::keyUp;
}

bool isWatched(const Tap& tap, const tap::Event& event) {
  return tap.enabled && tap.isValid && (tap.mask >> event.type & 1U) != 0;
}

/// The first of the events sets out.
void setOut(Mac& mac) {
  TapLine& line = mac.tapLine;
  line.underWay = true;
  line.ahead.clear();
  // macOS keeps what is typed into a password from everybody but the application.
  if (isKey(line.waiting.front().event) && hasSecureInput(mac.world)) return;
  for (const Tap& tap : line.taps) line.ahead.push_back(tap.number);
}

/// The first of the events comes to a tap, which may hold it.
void comeTo(Mac& mac, const Tap& tap) {
  TapLine& line = mac.tapLine;
  const tap::Event& event = line.waiting.front().event;
  if (tap.isDead && tap.filters) {
    line.hold = TapLine::Hold{tap.number, ++line.lastSerial, mac.now + tapPatience};
    return;
  }
  if (tap.isDead || !isWatched(tap, event)) return;
  if (!tap.filters) {
    tell(mac, tap, noVerdict, event);
    return;
  }
  line.hold = TapLine::Hold{tap.number, ++line.lastSerial, mac.now + tapPatience};
  tell(mac, tap, line.lastSerial, event);
}

/// The first of the events has passed all taps, or has been swallowed by one.
void arrive(Mac& mac, bool passed) {
  TapLine& line = mac.tapLine;
  const InputEvent input = std::move(line.waiting.front());
  line.waiting.pop_front();
  line.underWay = false;
  const std::string outcome = passed ? takeInput(mac.world, input) : "swallowed by a tap";
  if (passed && !outcome.empty()) mac.arrived.push_back(outcome);
  if (line.taps.empty()) return;  // whatever the user does would fill the journal
  enter(mac, {.kind = JournalEntry::Kind::input,
              .what = nameOfInput(input),
              .landed = passed,
              .outcome = outcome});
}

/// Lets events go on until one is held, or none is left.
void pump(Mac& mac) {
  TapLine& line = mac.tapLine;
  while (!line.hold && !line.waiting.empty()) {
    if (!line.underWay) setOut(mac);
    if (line.ahead.empty()) {
      arrive(mac, true);
      continue;
    }
    const std::int64_t number = line.ahead.front();
    line.ahead.pop_front();
    if (const Tap* tap = findTap(mac, number)) comeTo(mac, *tap);
  }
}

/// The system disables a tap and tells it why. What waits for it goes on, unless it is dead.
void disable(Mac& mac, Tap& tap, std::uint32_t notice) {
  tap.enabled = false;
  tap::Event event;
  event.type = notice;
  tell(mac, tap, noVerdict, event);
  auto& hold = mac.tapLine.hold;
  if (!hold || hold->tap != tap.number) return;
  if (tap.isDead) {
    hold->deadline.reset();
  } else {
    hold.reset();
  }
}

}  // namespace

void takeUserInput(Mac& mac, std::vector<InputEvent> events) {
  if (!reachesApplications(mac.world)) {
    mac.arrived.emplace_back("nothing gets it: the session is locked or not on the console");
    return;
  }
  for (InputEvent& event : events) {
    event.since = mac.now;
    mac.tapLine.waiting.push_back(std::move(event));
  }
  pump(mac);
}

void disableTaps(Mac& mac, std::uint32_t notice) {
  for (Tap& tap : mac.tapLine.taps) {
    if (tap.enabled) disable(mac, tap, notice);
  }
  pump(mac);
}

std::optional<std::int64_t> createTap(Mac& mac, const Client& client, tap::Place place,
                                      tap::Kind kind, std::uint64_t mask) {
  if (!canMakeTap(mac, kind, mask)) return std::nullopt;
  auto& taps = mac.tapLine.taps;
  const Tap tap{++mac.numbers, client.pid, kind == tap::Kind::filters, false,
                grantedMask(mac.world, mask)};
  taps.insert(place == tap::Place::head ? taps.begin() : taps.end(), tap);
  return tap.number;
}

bool canMakeTap(const Mac& mac, tap::Kind kind, std::uint64_t mask) {
  const bool filtersKeys = kind == tap::Kind::filters && (mask & keys) != 0;
  if (filtersKeys && !mac.world.system.givesKeyTaps) return false;
  return mac.world.accessibilityAllowed && grantedMask(mac.world, mask) != 0;
}

void enableTap(Mac& mac, std::int64_t number) {
  Tap* tap = findTap(mac, number);
  if (tap == nullptr) return;
  tap->enabled = true;
  // A dead one goes on holding what it holds, and is found too slow once more.
  auto& hold = mac.tapLine.hold;
  if (hold && hold->tap == number && !hold->deadline) hold->deadline = mac.now + tapPatience;
}

bool isTapEnabled(const Mac& mac, std::int64_t number) {
  const auto& taps = mac.tapLine.taps;
  return std::any_of(taps.begin(), taps.end(), [&](const Tap& each) {
    return each.number == number && each.enabled && each.isValid;
  });
}

void withdrawTaps(Mac& mac) {
  for (Tap& tap : mac.tapLine.taps) tap.isDead = true;
}

void silenceTaps(Mac& mac) {
  for (Tap& tap : mac.tapLine.taps) tap.enabled = false;
}

void invalidateTaps(Mac& mac) {
  for (Tap& tap : mac.tapLine.taps) tap.isValid = false;
}

void takeVerdict(Mac& mac, std::int64_t number, std::int64_t serial, bool pass) {
  auto& hold = mac.tapLine.hold;
  if (!hold || hold->tap != number || hold->serial != serial) return;
  hold.reset();
  if (!pass) arrive(mac, false);
  pump(mac);
}

std::optional<Microseconds> nextTapDeadline(const Mac& mac) {
  if (!mac.tapLine.hold) return std::nullopt;
  return mac.tapLine.hold->deadline;
}

void expireTaps(Mac& mac) {
  const auto deadline = nextTapDeadline(mac);
  if (!deadline || mac.now < *deadline) return;
  disable(mac, *findTap(mac, mac.tapLine.hold->tap), tap::disabledByTimeout);
  pump(mac);
}

void dropTaps(Mac& mac, const Client& client) {
  TapLine& line = mac.tapLine;
  auto& taps = line.taps;
  taps.erase(std::remove_if(taps.begin(), taps.end(),
                            [&](const Tap& tap) { return tap.owner == client.pid; }),
             taps.end());
  if (line.hold && findTap(mac, line.hold->tap) == nullptr) line.hold.reset();
  pump(mac);
}

}  // namespace simulator
