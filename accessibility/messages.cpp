#include "accessibility/messages.h"

#include <cstddef>
#include <cstdint>
#include <utility>

#include "input/sky.h"
#include "main/ending.h"
#include "main/globals.h"
#include "platform/loop.h"

namespace driver::messages {

namespace {

// One time-out may be a moment of work; after two, each further message would cost six seconds of
// nothing.
constexpr int toleratedTimeOuts = 2;

bool isSilenced(platform::Pid pid) {
  const auto& counts = globals().messageTimeOuts;
  const auto entry = counts.find(pid);
  return entry != counts.end() && entry->second >= toleratedTimeOuts;
}

/// Sends one message, unless its process is silenced. `send` returns what has an `outcome`;
/// `unsent` has the one of a message that was not sent.
template <class Answer, class Send>
Answer deliver(const ax::Element& element, Answer unsent, const Send& send) {
  const platform::Pid pid = ax::pid(element);
  if (isSilenced(pid)) return unsent;
  Answer answer = send();
  if (answer.outcome.timedOut) ++globals().messageTimeOuts[pid];
  return answer;
}

/// What came of a write or an action.
struct Acted {
  ax::Outcome outcome;
};

struct NumberReading {
  platform::WindowNumber number = 0;
  ax::Outcome outcome;
};

constexpr ax::Outcome notSent = {ax::Error::cannotComplete, false};

NumberReading readNumber(Sky::AxGetWindow getWindow, const ax::Element& element) {
  NumberReading reading;
  const std::uint64_t start = loop::uptimeNanoseconds();
  reading.outcome.error = static_cast<ax::Error>(getWindow(element.get(), &reading.number));
  // This entry point does not tell a time-out from an early refusal: the clock does.
  reading.outcome.timedOut = reading.outcome.error == ax::Error::cannotComplete &&
                             loop::uptimeNanoseconds() - start >= ax::timedOutNanoseconds;
  return reading;
}

}  // namespace

ax::Reading attribute(const ax::Element& element, const char* name) {
  ax::Reading reading = deliver(element, ax::Reading{std::nullopt, notSent},
                                [&] { return ax::attribute(element, name); });
  if (reading.outcome.error != ax::Error::success) reading.value.reset();
  return reading;
}

std::vector<ax::Slot> attributes(const ax::Element& element,
                                 const std::vector<const char*>& names) {
  ax::Readings readings =
      deliver(element, ax::Readings{{}, notSent}, [&] { return ax::attributes(element, names); });
  if (readings.outcome.error != ax::Error::success) {
    readings.slots.clear();
    // Nothing can be had of an element that has gone, or of an application that hangs.
    if (readings.outcome.timedOut || readings.outcome.error == ax::Error::invalidElement) {
      readings.slots.assign(names.size(), ax::Slot{std::nullopt, readings.outcome.error});
    }
  }
  readings.slots.resize(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    ax::Slot& slot = readings.slots[i];
    if (slot.value || slot.error != ax::Error::success) continue;
    // Some applications do not answer a batch, or leave a slot of it empty, but give by itself what
    // it asked for.
    ax::Reading single = messages::attribute(element, names[i]);
    slot = {std::move(single.value), single.outcome.error};
  }
  return std::move(readings.slots);
}

std::vector<std::string> actionNames(const ax::Element& element) {
  const ax::ActionNames actions =
      deliver(element, ax::ActionNames{{}, notSent}, [&] { return ax::actionNames(element); });
  if (actions.outcome.error != ax::Error::success) return {};
  return actions.names;
}

std::optional<ax::Element> elementAt(const ax::Element& application, platform::Point point) {
  const ax::Hit hit = deliver(application, ax::Hit{std::nullopt, notSent},
                              [&] { return ax::elementAt(application, point); });
  return hit.outcome.error == ax::Error::success ? hit.element : std::nullopt;
}

ax::Error perform(const ax::Element& element, const char* action) {
  holdBackIfEnding();
  const Acted acted =
      deliver(element, Acted{notSent}, [&] { return Acted{ax::perform(element, action)}; });
  return acted.outcome.error;
}

ax::Error setAttribute(const ax::Element& element, const char* name, const ax::Value& value) {
  holdBackIfEnding();
  const Acted acted = deliver(element, Acted{notSent},
                              [&] { return Acted{ax::setAttribute(element, name, value)}; });
  return acted.outcome.error;
}

std::optional<platform::WindowNumber> windowNumber(const ax::Element& element) {
  const Sky::AxGetWindow getWindow = Sky::axGetWindow();
  if (getWindow == nullptr) return std::nullopt;
  const NumberReading reading =
      deliver(element, NumberReading{0, notSent}, [&] { return readNumber(getWindow, element); });
  if (reading.outcome.error != ax::Error::success || reading.number == 0) return std::nullopt;
  return reading.number;
}

}  // namespace driver::messages
