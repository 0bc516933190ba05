#include <benchmark/benchmark.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "tests/costs/footprint/measure.h"

/// What a walk costs for each element of the tree, and how that grows: messages to the application,
/// allocations and bytes outside the seam (from 1,000 to 20,000 elements), and the exponent b in
/// time = a * N^b.
namespace {

using footprint::Measure;
using footprint::measured;
using footprint::Shape;

constexpr std::array<std::size_t, 6> sizes = {1'000, 2'000, 4'000, 8'000, 14'000, 20'000};
constexpr int rounds = 12;

/// The slope of the line through the logarithms of the least times, by least squares. The sizes
/// take turns, so that what else the machine does falls on all of them.
double exponentOf(const char* commandLine, Shape shape) {
  std::array<double, sizes.size()> least{};
  least.fill(std::numeric_limits<double>::max());
  for (int round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      least[i] = std::min(least[i], measured(commandLine, shape, sizes[i]).seconds);
    }
  }
  double sumX = 0;
  double sumY = 0;
  double sumXX = 0;
  double sumXY = 0;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const double x = std::log(static_cast<double>(sizes[i]));
    const double y = std::log(least[i]);
    sumX += x;
    sumY += y;
    sumXX += x * x;
    sumXY += x * y;
  }
  const auto count = static_cast<double>(sizes.size());
  return (count * sumXY - sumX * sumY) / (count * sumXX - sumX * sumX);
}

void walk(benchmark::State& state, const char* commandLine, Shape shape) {
  Measure few;
  Measure many;
  double exponent = 0;
  for (auto step : state) {
    few = measured(commandLine, shape, sizes.front());
    many = measured(commandLine, shape, sizes.back());
    exponent = exponentOf(commandLine, shape);
  }
  const auto each = [](std::size_t atFew, std::size_t atMany) {
    return (static_cast<double>(atMany) - static_cast<double>(atFew)) /
           static_cast<double>(sizes.back() - sizes.front());
  };
  state.counters["messages"] = each(few.messages, many.messages);
  state.counters["allocations"] = each(few.allocations, many.allocations);
  state.counters["bytes"] = each(few.peakBytes, many.peakBytes);
  state.counters["exponent"] = exponent;
}

void addWalks() {
  constexpr std::pair<const char*, Shape> shapes[] = {
      {"wide", Shape::wide}, {"deep", Shape::deep}, {"bushy", Shape::bushy}};
  for (const char* line :
       {"ax-find-text Notes Nothing", "ax-texts-at Notes 900 900", "ax-match Notes Nothing -1 -1",
        "ax-press-exact Notes Nothing", "ax-press-in-document Notes Chat Send", "ax-focused Notes",
        "ax-modal Notes", "ax-popup-items Notes", "ax-slider Notes Size"}) {
    for (const auto& [name, shape] : shapes) {
      const std::string title = std::string(line) + "/" + name;
      benchmark::RegisterBenchmark(title.c_str(), walk, line, shape)->Iterations(1);
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  addWalks();
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
