#include <algorithm>
#include <cstdio>

#include "tests/soak/generate.h"
#include "tests/soak/workers.h"

/// Plays cases that nobody thought of, and prints those that fail.
namespace soak {

namespace {

void print(const std::string& text) { std::fputs(text.c_str(), stdout); }

int showCase(std::uint64_t seed) {
  const Case one = generate(seed);
  print(worldText(one) + "---\n" + stepsText(one));
  return 0;
}

int playMany(const Options& options) {
  const Tally tally = playSeeds(options);
  for (const Failure& failure : tally.failures) {
    print("seed " + std::to_string(failure.seed) + ": " + failure.judge + ": " + failure.text +
          "\n");
  }
  std::printf("%llu cases, %llu runs, %llu simulated seconds in %.1f s: %.0f cases a second\n",
              static_cast<unsigned long long>(tally.cases),
              static_cast<unsigned long long>(tally.runs),
              static_cast<unsigned long long>(tally.simulatedSeconds), tally.seconds,
              static_cast<double>(tally.cases) / tally.seconds);
  std::printf("%zu seeds failed\n", tally.failures.size());
  return tally.failures.empty() ? 0 : 1;
}

int main(const std::vector<std::string>& words) {
  const auto options = readOptions(words);
  if (!options) {
    print(usage);
    return 2;
  }
  return options->shows ? showCase(options->seed) : playMany(*options);
}

}  // namespace

}  // namespace soak

int main(int count, char** words) {
  return soak::main({words + std::min(count, 1), words + count});
}
