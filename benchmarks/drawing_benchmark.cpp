#include <benchmark/benchmark.h>

#include "benchmarks/desk.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"

/// What a picture costs: drawn and encoded, and as a digest.
namespace {

simulator::Picture windowPicture() {
  simulator::Picture picture;
  picture.windows.push_back(simulator::pictureOf(desk(), desk().windows.back()));
  picture.source = picture.windows.front().window.frame;
  picture.width = static_cast<std::uint64_t>(picture.source.width * 2);
  picture.height = static_cast<std::uint64_t>(picture.source.height * 2);
  picture.backgroundGrey = 0.5;
  return picture;
}

void drawCapture(benchmark::State& state) {
  const simulator::Picture picture = windowPicture();
  for (auto step : state) benchmark::DoNotOptimize(simulator::drawPng(picture));
}

void digestCapture(benchmark::State& state) {
  const simulator::Picture picture = windowPicture();
  for (auto step : state) benchmark::DoNotOptimize(simulator::digest(picture));
}

void parseDesk(benchmark::State& state) {
  constexpr const char* text =
      "app Notes pid 41\n  window 7 \"Inbox\" at 100,80 size 800x600\n    AXButton \"Send\"\n";
  for (auto step : state) benchmark::DoNotOptimize(simulator::parseWorld(text));
}

BENCHMARK(drawCapture)->Unit(benchmark::kMillisecond);
BENCHMARK(digestCapture);
BENCHMARK(parseDesk);

}  // namespace
