#include "simulator/rules/rule.h"

namespace simulator {

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

}  // namespace simulator
