#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "tests/soak/apart.h"
#include "tests/soak/case_files.h"
#include "tests/soak/generate.h"
#include "tests/soak/shrink.h"
#include "tests/soak/workers.h"
#include "tests/support/temporary_folder.h"

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
  std::printf("%llu cases, %llu runs, %llu simulated seconds in %.1f s\n",
              static_cast<unsigned long long>(tally.cases),
              static_cast<unsigned long long>(tally.runs),
              static_cast<unsigned long long>(tally.simulatedSeconds), tally.seconds);
  std::printf("%.0f cases and %.0f simulated seconds for each of %.1f s of processor time\n",
              static_cast<double>(tally.cases) / tally.processorSeconds,
              static_cast<double>(tally.simulatedSeconds) / tally.processorSeconds,
              tally.processorSeconds);
  if (options.showsCoverage) print(whatNeverOccurred(tally.coverage));
  std::printf("%zu seeds failed\n", tally.failures.size());
  return tally.failures.empty() ? 0 : 1;
}

void print(const Complaint& complaint) { print(complaint.judge + ": " + complaint.text + "\n"); }

int shrinkSeed(std::uint64_t seed, const std::string& target) {
  const testing_support::TemporaryFolder folder;
  const Case whole = generate(seed);
  const auto complaint = verdictApart(whole, folder.path(""));
  if (!complaint) {
    print("the seed does not fail\n");
    return 1;
  }
  const Case smallest = shrunk(whole, [&](const Case& one) {
    const auto other = verdictApart(one, folder.path(""));
    return other && other->judge == complaint->judge;
  });
  const auto left = verdictApart(smallest, folder.path(""));
  writeCase(smallest, target,
            "seed " + std::to_string(seed) + ": " + left->judge + ": " + left->text);
  print(worldText(smallest) + "---\n" + stepsText(smallest));
  print(*left);
  return 0;
}

int replay(const std::string& source) {
  const testing_support::TemporaryFolder folder;
  const auto complaint = verdictApart(readCaseIn(source), folder.path(""));
  if (complaint) print(*complaint);
  return complaint ? 1 : 0;
}

int printScript(const std::string& source) {
  print(scriptText(readCaseIn(source)));
  return 0;
}

/// What is asked for besides playing seeds.
int carryOut(const Options& options) {
  if (options.shows) return showCase(options.seed);
  if (options.shrunk) return shrinkSeed(options.seed, *options.shrunk);
  if (options.replayed) return replay(*options.replayed);
  if (options.scripted) return printScript(*options.scripted);
  return playMany(options);
}

int main(const std::vector<std::string>& words) {
  const auto options = readOptions(words);
  if (!options) {
    print(usage);
    return 2;
  }
  try {
    return carryOut(*options);
  } catch (const std::runtime_error& error) {
    print(std::string(error.what()) + "\n");
    return 2;
  }
}

}  // namespace

}  // namespace soak

int main(int count, char** words) {
  return soak::main({words + std::min(count, 1), words + count});
}
