#include <benchmark/benchmark.h>

#include "benchmarks/desk.h"
#include "simulator/drawing/digest.h"
#include "simulator/drawing/drawn_pictures.h"
#include "simulator/drawing/pictures.h"

/// What a picture costs: drawn and encoded, and as a digest.
namespace {

/// A window of 900 by 700 points at two pixels to the point.
simulator::Picture windowPicture() {
  simulator::Picture picture;
  picture.windows.push_back(simulator::pictureOf(desk(), desk().windows.back()));
  picture.windows.front().window.frame = {100, 80, 900, 700};
  picture.source = picture.windows.front().window.frame;
  picture.width = 1800;
  picture.height = 1400;
  picture.backgroundGrey = 0.5;
  return picture;
}

void drawWindow(benchmark::State& state) {
  const simulator::Picture picture = windowPicture();
  for (auto step : state) benchmark::DoNotOptimize(simulator::drawPng(picture));
}

void drawScreen(benchmark::State& state) {
  const simulator::Picture picture = simulator::screenPicture(desk());
  for (auto step : state) benchmark::DoNotOptimize(simulator::drawPng(picture));
}

void drawUnchangedScreen(benchmark::State& state) {
  const simulator::Picture picture = simulator::screenPicture(desk());
  simulator::DrawnPictures drawn;
  for (auto step : state) benchmark::DoNotOptimize(drawn.png(picture));
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

BENCHMARK(drawWindow)->Unit(benchmark::kMillisecond);
BENCHMARK(drawScreen)->Unit(benchmark::kMillisecond);
BENCHMARK(drawUnchangedScreen);
BENCHMARK(digestCapture);
BENCHMARK(parseDesk);

}  // namespace
