#include <benchmark/benchmark.h>

#include "benchmarks/desk.h"
#include "tests/support/channels.h"

/// How much faster than a real Mac the simulated one runs whole commands, with every rule checked.
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

}  // namespace
