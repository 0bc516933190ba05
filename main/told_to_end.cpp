#include "main/told_to_end.h"

#include <array>
#include <cstdint>
#include <mutex>

#include "main/ending.h"
#include "main/globals.h"
#include "main/replies.h"

namespace driver {

namespace {

constexpr std::array allEndingSignals = {process::Signal::terminate, process::Signal::interrupt,
                                         process::Signal::hangUp};

// Together with letting four modifiers go (48 ms) and giving focus back (40 ms) they are less than
// `endingMicroseconds`. The longest act that waits for nobody, ten keys of which half are down,
// takes 72 ms.
constexpr std::uint32_t actMicroseconds = 100'000;
constexpr std::uint32_t lineMicroseconds = 50'000;

bool hasReplied() {
  const std::lock_guard lock(globals().mutex);
  return globals().replied;
}

[[noreturn]] void endTold(process::Signal signal) {
  beginEnding(actMicroseconds);
  if (!hasReplied()) emitWithin(refusal("the run was told to end by a signal"), lineMicroseconds);
  process::dieBySignal(signal);
}

}  // namespace

std::vector<process::Signal> endingSignals() {
  std::vector<process::Signal> signals;
  for (const process::Signal signal : allEndingSignals) {
    if (!process::isIgnored(signal)) signals.push_back(signal);
  }
  return signals;
}

void endWhenTold() { process::onEndingSignal(endingSignals(), endTold); }

}  // namespace driver
