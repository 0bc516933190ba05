#include "platform/process.h"

#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <utility>

#include "platform/loop.h"
#include "platform/posix/process.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/process_state.h"

namespace process {

using platform::Function;
using simulated::ask;
using simulated::askFor;
using simulated::state;

namespace {

/// True for the first flow that ends the process; an exit handler may do so again.
bool claimTheEnd() {
  const std::uintptr_t flow = simulated::channel().ownFlow();
  const std::lock_guard lock(state().mutex);
  if (!state().ending) state().ending = flow;
  return *state().ending == flow;
}

void (*lastActOfProcess)() = nullptr;

void act() {
  simulated::channel().beginLastAct();
  lastActOfProcess();
}

}  // namespace

std::optional<std::string> environment(const char* name) {
  return askFor<std::optional<std::string>>(Function::environment, name);
}

bool acceptsNullSignal(platform::Pid pid) { return askFor<bool>(Function::nullSignal, pid); }

platform::Pid ownPid() { return simulated::channel().ownPid(); }

void exit(int status) {
  if (!claimTheEnd()) loop::suspend();
  const auto handlers = std::exchange(state().exitHandlers, {});
  for (auto handler = handlers.rbegin(); handler != handlers.rend(); ++handler) (*handler)();
  simulated::channel().exit(status);
  std::abort();  // no channel comes back
}

void onExit(std::function<void()> handler) { state().exitHandlers.push_back(std::move(handler)); }

void handleSignals(std::span<const Signal> signals, std::function<void(Signal)> handler) {
  state().mainIsServed = true;
  state().hasFlows = true;
  state().signalHandler = std::move(handler);
  std::vector<int> numbers;
  for (const Signal signal : signals) {
    numbers.push_back(static_cast<int>(signal));
    ask(Function::handleSignal, signal);
  }
  simulated::channel().watchSignals(numbers);
}

// Where the process of the run is the test's own, its signals are those of the simulated Mac.
bool isIgnored(Signal signal) {
  return !simulated::channel().keepsOutput() && posix::isIgnored(static_cast<int>(signal));
}

void onEndingSignal(const std::vector<Signal>& signals, std::function<void(Signal)> handler) {
  std::vector<int> numbers;
  for (const Signal signal : signals) numbers.push_back(static_cast<int>(signal));
  simulated::channel().awaitEndingSignal(numbers, [handler = std::move(handler)](int number) {
    state().hasFlows = true;
    handler(static_cast<Signal>(number));
  });
}

void dieBySignal(Signal signal) {
  simulated::channel().dieBySignal(static_cast<int>(signal));
  std::abort();  // no channel comes back
}

// Where the process of the run is the test's own, its signals are the test's too.
void ignoreBrokenPipes() {
  if (!simulated::channel().keepsOutput()) posix::ignoreBrokenPipes();
}

void ignoreStops() {
  if (!simulated::channel().keepsOutput()) posix::ignoreStops();
}

void onFatalSignal(void (*lastAct)()) {
  if (simulated::channel().keepsOutput()) return;
  lastActOfProcess = lastAct;
  posix::onFatalSignal(act);
}

std::string fullUserName() { return askFor<std::string>(Function::fullUserName); }

std::string loginName() { return askFor<std::string>(Function::loginName); }

std::vector<std::string> preferredLanguages() {
  return askFor<std::vector<std::string>>(Function::preferredLanguages);
}

Version operatingSystemVersion() { return askFor<Version>(Function::operatingSystemVersion); }

std::string currentDirectory() { return askFor<std::string>(Function::currentDirectory); }

std::optional<platform::Bytes> toolOutput(const std::string& path,
                                          const std::vector<std::string>& arguments) {
  return askFor<std::optional<platform::Bytes>>(Function::toolOutput, path, arguments);
}

std::optional<std::string> givenName(const std::string& fullName) {
  return askFor<std::optional<std::string>>(Function::givenName, fullName);
}

}  // namespace process
