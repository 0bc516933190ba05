#include "tests/support/simulated_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "simulator/rules/replies.h"
#include "simulator/text/parse.h"
#include "tests/support/channels.h"
#include "tests/support/seen_replies.h"

namespace testing_support {

using simulator::Desktop;

namespace {

constexpr std::size_t tracedCallsMax = 400;

std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> found;
  while (true) {
    const std::size_t start = text.find_first_not_of(' ');
    if (start == std::string_view::npos) return found;
    text.remove_prefix(start);
    found.emplace_back(text.substr(0, text.find(' ')));
    text.remove_prefix(found.back().size());
  }
}

std::vector<simulator::Fault> parseFaults(const std::vector<std::string>& texts,
                                          const simulator::World& world) {
  std::vector<simulator::Fault> faults;
  for (const std::string& text : texts) faults.push_back(simulator::parseFault(text, world));
  return faults;
}

std::vector<std::string> callNames(const Desktop& desktop, std::size_t firstCall) {
  std::vector<std::string> names;
  for (std::size_t i = firstCall; i < desktop.trace().size(); ++i) {
    const auto function = desktop.trace().functionAt(i);
    if (function == platform::Function::writeOutput || function == platform::Function::exit) {
      continue;
    }
    names.emplace_back(platform::nameOf(function));
  }
  return names;
}

/// The handles that the start-up values of a run hold until the next run.
long startUpHandles() {
  const driver::Globals& values = driver::globals();
  return (values.src ? 1 : 0) + (values.guardOruFace ? 1 : 0) + (values.inputTap ? 1 : 0) +
         (values.guardTap ? 1 : 0);
}

std::string effectLines(const Desktop& desktop, std::size_t firstEntry,
                        simulator::Microseconds start) {
  std::string lines;
  const auto& journal = desktop.mac().journal;
  for (std::size_t i = firstEntry; i < journal.size(); ++i) {
    const std::string line = simulator::effectLine(journal[i], start);
    if (!line.empty()) lines += line + "\n";
  }
  return lines;
}

}  // namespace

Mode modeFromEnvironment() {
  const char* mode = std::getenv("DRIVER_TEST_MODE");
  return mode != nullptr && std::string_view(mode) == "forked" ? Mode::forked : Mode::direct;
}

TestMac::TestMac(std::string_view world, std::vector<std::string> faults, Mode mode) : mode_(mode) {
  simulator::World parsed = simulator::parseWorld(world);
  auto armed = parseFaults(faults, parsed);
  desktop_ = std::make_unique<Desktop>(std::move(parsed), std::move(armed));
}

TestMac::TestMac(simulator::World world, std::vector<simulator::Fault> faults, Mode mode)
    : desktop_(std::make_unique<Desktop>(std::move(world), std::move(faults))), mode_(mode) {}

TestMac::~TestMac() {
  if (!reportViolations_ || desktop_->violations().empty()) return;
  std::string report;
  for (const std::string& violation : desktop_->violations()) report += violation + "\n";
  std::size_t left = tracedCallsMax;
  for (const auto& entry : desktop_->trace()) {
    if (left-- == 0) break;
    report += simulator::traceLine(entry) + "\n";
  }
  ADD_FAILURE() << report;
}

Result TestMac::driver(std::string_view commandLine, const Environment& environment) {
  return driverWith(words(commandLine), environment);
}

Result TestMac::driverWith(const std::vector<std::string>& arguments,
                           const Environment& environment) {
  std::vector<std::string> commandLine = {"driver"};
  commandLine.insert(commandLine.end(), arguments.begin(), arguments.end());
  // A process with several flows, which the forked mode does not do.
  const bool isService = !arguments.empty() && simulator::isLongLived(arguments[0]);
  const Result result = record(commandLine, environment, [&](std::size_t client) {
    return mode_ == Mode::direct || isService ? runDirect(*desktop_, client, commandLine)
                                              : runForked(*desktop_, client, commandLine);
  });
  // What a long-lived process holds is its own until it ends.
  if (mode_ == Mode::direct && !isService && simulated::liveHandles() != startUpHandles()) {
    ADD_FAILURE() << "I20: " << simulated::liveHandles() << " handles are alive";
  }
  return result;
}

Result TestMac::record(const std::vector<std::string>& commandLine, const Environment& environment,
                       const std::function<int(std::size_t client)>& run) {
  const std::size_t client = desktop_->join(commandLine, environment);
  const simulator::Microseconds start = desktop_->mac().now;
  const std::size_t firstEntry = desktop_->mac().journal.size();
  const std::size_t firstCall = desktop_->trace().size();
  Result result;
  result.status = run(client);
  desktop_->leave(client);
  result.output = desktop_->client(client).output;
  keepReplies(commandLine, result.output);
  result.elapsed = desktop_->mac().now - start;
  result.calls = callNames(*desktop_, firstCall);
  result.effects = effectLines(*desktop_, firstEntry, start);
  return result;
}

std::string TestMac::valueOf(std::string_view application, std::string_view label) const {
  for (const auto& app : world().applications) {
    if (app.name != application) continue;
    for (const auto& element : app.elements) {
      if (element.removed || simulator::labelOf(element) != label) continue;
      const auto value = element.attributes.find("AXValue");
      if (value == element.attributes.end()) return "";
      if (const auto* text = std::get_if<std::string>(&value->second)) return *text;
    }
  }
  ADD_FAILURE() << "no element " << label << " in " << application;
  return "";
}

std::vector<std::string> TestMac::takeViolations() {
  reportViolations_ = false;
  return desktop_->violations();
}

std::int64_t messages(const Result& run) {
  return std::count_if(run.calls.begin(), run.calls.end(), [](const std::string& call) {
    return call.compare(0, 3, "ax.") == 0 || call == "private.ax-window";
  });
}

std::string seen(const Result& run) { return std::to_string(run.status) + " " + run.output; }

std::string success(std::string_view json) { return "0 " + std::string(json) + "\n"; }

std::string failure(std::string_view message) {
  return "1 {\"error\":\"" + std::string(message) + "\",\"ok\":false}\n";
}

}  // namespace testing_support
