#include <benchmark/benchmark.h>

#include <string>

#include "benchmarks/desk.h"
#include "simulator/text/parse.h"
#include "tests/support/channels.h"

/// How much faster than a real Mac the simulated one runs whole commands, with every rule checked;
/// and how long it takes to read a large world.
namespace {

void simulatedSecondsPerSecond(benchmark::State& state,
                               const std::vector<std::string>& commandLine) {
  double simulated = 0;
  for (auto step : state) {
    simulator::Desktop desktop(desk());
    testing_support::runDirect(desktop, desktop.join(commandLine, {}), commandLine);
    simulated += static_cast<double>(desktop.mac().now) / 1e6;
    if (!desktop.violations().empty()) state.SkipWithError("a rule was broken");
  }
  state.counters["simulated_s_per_s"] = benchmark::Counter(simulated, benchmark::Counter::kIsRate);
}

using Words = std::vector<std::string>;

BENCHMARK_CAPTURE(simulatedSecondsPerSecond, click,
                  Words({"driver", "bg-click", "Notes", "130", "125"}));
BENCHMARK_CAPTURE(simulatedSecondsPerSecond, click_without_effect,
                  Words({"driver", "bg-click", "Notes", "700", "600"}));
BENCHMARK_CAPTURE(simulatedSecondsPerSecond, scroll,
                  Words({"driver", "bg-scroll", "Notes", "200", "200", "0", "-3"}));

/// 100 applications with a window each, and 500 elements in it.
std::string largeWorld() {
  std::string text;
  for (int application = 0; application < 100; ++application) {
    const std::string number = std::to_string(100 + application);
    text += "app \"App " + number + "\" pid " + number + " bundle com.example.a" + number + "\n";
    text += "    window " + number + " \"Window\" at 40,60 size 700x500\n";
    for (int element = 0; element < 500; ++element) {
      text += "        AXButton \"Button " + std::to_string(element) + "\" at " +
              std::to_string(50 + element % 20 * 30) + "," +
              std::to_string(70 + element / 20 * 18) + " size 28x16\n";
    }
  }
  return text;
}

void readsLargeWorld(benchmark::State& state) {
  const std::string text = largeWorld();
  for (auto step : state) benchmark::DoNotOptimize(simulator::parseWorld(text));
}

BENCHMARK(readsLargeWorld)->Unit(benchmark::kMillisecond);

}  // namespace
