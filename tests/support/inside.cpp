#include "tests/support/inside.h"

#include <cstdlib>
#include <utility>

#include "input/session.h"
#include "main/globals.h"
#include "platform/simulated/channel.h"
#include "platform/simulated/values.h"
#include "tests/support/channels.h"

namespace testing_support {

namespace {

const simulator::Application& applicationNamed(const TestMac& mac, std::string_view name) {
  for (const auto& application : mac.world().applications) {
    if (application.name == name) return application;
  }
  ADD_FAILURE() << "no application " << name;
  return mac.world().applications.at(0);
}

Result runAfter(const std::function<void()>& preparation, TestMac& mac,
                const std::function<void()>& function, const Environment& environment) {
  const std::vector<std::string> commandLine = {"driver", "inside"};
  std::size_t startUpCalls = 0;
  Result result = mac.record(commandLine, environment, [&](std::size_t client) {
    return runBodyDirect(mac.desktop(), client, [&] {
      const std::size_t before = mac.desktop().trace().size();
      driver::renewGlobals();
      driver::initialise(commandLine);
      preparation();
      startUpCalls = mac.desktop().trace().size() - before;
      function();
    });
  });
  result.calls.erase(result.calls.begin(),
                     result.calls.begin() + static_cast<std::ptrdiff_t>(startUpCalls));
  return result;
}

}  // namespace

Result runInside(TestMac& mac, const std::function<void()>& function,
                 const Environment& environment) {
  return runAfter([] {}, mac, function, environment);
}

Result runActing(TestMac& mac, const std::function<void()>& function) {
  return runAfter([] { driver::sessionUsable(); }, mac, function, {});
}

ax::Element elementOf(const TestMac& mac, std::string_view application, std::string_view label) {
  const auto& owner = applicationNamed(mac, application);
  for (const auto& element : owner.elements) {
    if (!element.removed && simulator::labelOf(element) == label) {
      return simulated::makeElement({owner.pid, element.id});
    }
  }
  ADD_FAILURE() << "no element " << label << " in " << application;
  return applicationOf(mac, application);
}

ax::Element applicationOf(const TestMac& mac, std::string_view application) {
  return simulated::makeElement({applicationNamed(mac, application).pid, 0});
}

std::vector<std::string> callsOf(const TestMac& mac, platform::Function function) {
  std::vector<std::string> lines;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != function) continue;
    const std::string line = simulator::traceLine(entry);
    lines.push_back(line.substr(line.find(platform::nameOf(entry.call.function))));
  }
  return lines;
}

std::vector<std::string> postedRecords(const TestMac& mac) {
  std::vector<std::string> records;
  for (const auto& entry : mac.desktop().trace()) {
    if (entry.call.function != platform::Function::postRecord) continue;
    records.push_back(driver::unpack<std::string>(entry.call.arguments.at(2)));
  }
  return records;
}

FixedAnswer::FixedAnswer(platform::Function function, driver::Datum answer)
    : underneath_(simulated::channel()), function_(function), answer_(std::move(answer)) {
  simulated::setChannel(this);
}

FixedAnswer::~FixedAnswer() { simulated::setChannel(&underneath_); }

driver::Datum FixedAnswer::call(platform::Call call) {
  return call.function == function_ ? answer_ : underneath_.call(std::move(call));
}

platform::Pid FixedAnswer::ownPid() const { return underneath_.ownPid(); }

void FixedAnswer::startFlow(std::function<void()> body) { underneath_.startFlow(std::move(body)); }

void FixedAnswer::watchSignals(const std::vector<int>& numbers) {
  underneath_.watchSignals(numbers);
}

void FixedAnswer::awaitEndingSignal(const std::vector<int>& numbers,
                                    std::function<void(int)> handler) {
  underneath_.awaitEndingSignal(numbers, std::move(handler));
}

bool FixedAnswer::keepsOutput() const { return underneath_.keepsOutput(); }

void FixedAnswer::exit(int status) {
  underneath_.exit(status);
  std::abort();  // no channel comes back
}

void FixedAnswer::dieBySignal(int signal) {
  underneath_.dieBySignal(signal);
  std::abort();  // no channel comes back
}

}  // namespace testing_support
