#include <benchmark/benchmark.h>

#include "benchmarks/desk.h"
#include "tests/support/simulated_run.h"

/// How many seam calls a command makes, the reply's two writes left out.
namespace {

void seamCalls(benchmark::State& state, const char* commandLine) {
  std::size_t calls = 0;
  for (auto step : state) {
    testing_support::TestMac mac(desk(), {}, testing_support::Mode::direct);
    calls = mac.driver(commandLine).calls.size();
  }
  state.counters["seam_calls"] = static_cast<double>(calls);
}

BENCHMARK_CAPTURE(seamCalls, session, "session");
BENCHMARK_CAPTURE(seamCalls, permissions, "permissions");
BENCHMARK_CAPTURE(seamCalls, scene, "scene");
BENCHMARK_CAPTURE(seamCalls, windows, "windows Notes");
BENCHMARK_CAPTURE(seamCalls, capture, "capture Notes /tmp/driver-benchmark.png");
BENCHMARK_CAPTURE(seamCalls, click, "bg-click Notes 130 125");
BENCHMARK_CAPTURE(seamCalls, double_click, "bg-click Notes 130 125 left 2");
BENCHMARK_CAPTURE(seamCalls, scroll, "bg-scroll Notes 200 200 0 -3");
BENCHMARK_CAPTURE(seamCalls, move, "bg-move Notes 200 200");
BENCHMARK_CAPTURE(seamCalls, drag, "bg-drag Notes 200 200 300 300");

}  // namespace
