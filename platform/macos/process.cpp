#include "platform/process.h"

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

#include "platform/macos/core_foundation.h"
#include "platform/posix/process.h"
#include "platform/posix/tool.h"

namespace process {

std::optional<std::string> environment(const char* name) { return posix::environment(name); }

platform::Pid ownPid() { return posix::ownPid(); }

bool acceptsNullSignal(platform::Pid pid) { return posix::acceptsNullSignal(pid); }

void exit(int status) { posix::exit(status); }

void onExit(std::function<void()> handler) { posix::onExit(std::move(handler)); }

bool isIgnored(Signal signal) { return posix::isIgnored(static_cast<int>(signal)); }

void onEndingSignal(const std::vector<Signal>& signals, std::function<void(Signal)> handler) {
  std::vector<int> numbers;
  for (const Signal signal : signals) numbers.push_back(static_cast<int>(signal));
  posix::onEndingSignal(numbers, [handler = std::move(handler)](int number) {
    handler(static_cast<Signal>(number));
  });
}

void dieBySignal(Signal signal) { posix::dieBySignal(static_cast<int>(signal)); }

void ignoreBrokenPipes() { posix::ignoreBrokenPipes(); }

void ignoreStops() { posix::ignoreStops(); }

void onFatalSignal(void (*lastAct)()) { posix::onFatalSignal(lastAct); }

std::vector<std::string> preferredLanguages() {
  const macos::Owned<CFArrayRef> tags(CFLocaleCopyPreferredLanguages());
  if (!tags) return {};
  std::vector<std::string> languages;
  for (CFIndex i = 0; i < CFArrayGetCount(tags.get()); ++i) {
    if (auto tag = macos::text(CFArrayGetValueAtIndex(tags.get(), i))) {
      languages.push_back(*std::move(tag));
    }
  }
  return languages;
}

std::string currentDirectory() { return posix::currentDirectory(); }

std::optional<platform::Bytes> toolOutput(const std::string& path,
                                          const std::vector<std::string>& arguments) {
  return posix::toolOutput(path, arguments);
}

}  // namespace process
