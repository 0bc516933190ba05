#include "simulator/rules/rule.h"

namespace simulator {

using platform::Function;

const std::string& WatchedRun::command() const {
  static const std::string none;
  return client.arguments.size() > 1 ? client.arguments[1] : none;
}

bool WatchedRun::pressesKeys() const {
  const std::string& name = command();
  return name == "bg-key" || name == "bg-type" || name == "bg-paste-files";
}

bool WatchedRun::endsRequest(const platform::Call& call) const {
  return call.function == Function::acquireOutput && isService();
}

bool isPost(Function function) {
  return function == Function::publicPost || function == Function::privatePost;
}

}  // namespace simulator
