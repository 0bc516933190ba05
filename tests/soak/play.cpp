#include "tests/soak/play.h"

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "simulator/rules/replies.h"
#include "simulator/text/parse.h"
#include "tests/support/channels.h"

namespace soak {

namespace {

using simulator::Desktop;

std::unique_ptr<Desktop> desktopOf(const Case& one, const std::string& folder) {
  simulator::World world = simulator::parseWorld(inFolder(worldText(one), folder));
  std::vector<simulator::Fault> faults;
  for (const std::string& text : one.faults) faults.push_back(simulator::parseFault(text, world));
  return std::make_unique<Desktop>(std::move(world), faults);
}

/// The handles that the start-up values of a run hold until the next run.
long startUpHandles() {
  const driver::Globals& values = driver::globals();
  return (values.src ? 1 : 0) + (values.guardOruFace ? 1 : 0);
}

void playStep(const Step& step, const std::string& folder, Played& played) {
  Desktop& desktop = *played.desktop;
  desktop.advanceTo(desktop.mac().now + step.after);
  std::vector<std::string> commandLine = {"driver"};
  for (const std::string& word : step.words) commandLine.push_back(inFolder(word, folder));
  PlayedStep& result = played.steps.emplace_back();
  result.client = desktop.join(commandLine, step.environment);
  result.began = desktop.mac().now;
  result.status = testing_support::runDirect(desktop, result.client, commandLine);
  desktop.leave(result.client);
  result.output = desktop.client(result.client).output;
  result.ended = desktop.mac().now;
  played.handlesLeft += simulated::liveHandles() - startUpHandles();
}

}  // namespace

Played play(const Case& one, const std::string& folder) {
  Played played;
  played.desktop = desktopOf(one, folder);
  for (const Step& step : one.steps) playStep(step, folder, played);
  return played;
}

}  // namespace soak
