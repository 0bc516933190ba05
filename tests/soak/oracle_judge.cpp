#include "tests/soak/oracle_judge.h"

#include "simulator/mac/journal.h"
#include "tests/oracle/effects.h"

namespace soak {

namespace {

std::string effectsOf(const Played& played, const PlayedStep& step) {
  std::string lines;
  for (const auto& entry : played.desktop->mac().journal) {
    if (entry.number <= step.entriesBefore || entry.number > step.entriesAfter) continue;
    const std::string line = simulator::effectLine(entry, *step.began);
    if (!line.empty()) lines += line + "\n";
  }
  return oracle::comparableEffects(lines);
}

std::string differenceOf(const Played& played, const PlayedStep& step) {
  const oracle::Expectation& expected = *step.expected;
  if (expected.status != step.status || expected.output != step.output) {
    return "status " + std::to_string(step.status) + " and " + step.output +
           "where the reference says " + std::to_string(expected.status) + " and " +
           expected.output;
  }
  const Microseconds elapsed = step.ended - *step.began;
  if (expected.elapsed && *expected.elapsed != elapsed) {
    return "takes " + std::to_string(elapsed) + " us where the reference says " +
           std::to_string(*expected.elapsed);
  }
  const std::string effects = effectsOf(played, step);
  if (expected.effects && *expected.effects != effects) {
    return "does\n" + effects + "where the reference says\n" + *expected.effects;
  }
  return "";
}

}  // namespace

std::string difference(const Case& one, const Played& played) {
  for (std::size_t i = 0; i < played.steps.size(); ++i) {
    if (!played.steps[i].expected) continue;
    // A signal of the system's comes at its own time.
    if (played.desktop->client(played.steps[i].client).told) continue;
    const std::string found = differenceOf(played, played.steps[i]);
    if (found.empty()) continue;
    const auto& words = one.steps[i].words;
    return "step " + std::to_string(i + 1) + " (" + (words.empty() ? "" : words.front()) + ") " +
           found;
  }
  return "";
}

}  // namespace soak
