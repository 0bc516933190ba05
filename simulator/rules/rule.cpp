#include "simulator/rules/rule.h"

#include <algorithm>

#include "simulator/mac/arguments.h"

namespace simulator {

using platform::Call;
using platform::Function;

bool WatchedRun::pressesKeys() const {
  const std::string_view name = command();
  return name == "bg-key" || name == "bg-type" || name == "bg-paste-files";
}

bool WatchedRun::endsRequest(const platform::Call& call) const {
  return call.function == Function::acquireOutput && isService();
}

bool isPost(Function function) {
  return function == Function::publicPost || function == Function::privatePost;
}

bool isEnablingAttribute(std::string_view name) {
  return name == "AXManualAccessibility" || name == "AXEnhancedUserInterface";
}

// A write that names no attribute is none: the world refuses it.
bool actsOnElement(const Call& call) {
  if (call.function == Function::axPerform) return true;
  const Arguments arguments(call);
  return call.function == Function::axSetAttribute && arguments.count() > 1 &&
         !isEnablingAttribute(arguments.text(1));
}

bool readsAttribute(const Call& call, std::string_view name) {
  if (call.function == Function::axAttribute) return Arguments(call).text(1) == name;
  if (call.function != Function::axAttributes) return false;
  const auto names = Arguments(call).get<std::vector<std::string>>(1);
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace simulator
