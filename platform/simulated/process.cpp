#include "platform/process.h"

#include <cstdlib>

#include "platform/simulated/channel.h"

namespace process {

using platform::Function;
using simulated::askFor;

std::optional<std::string> environment(const char* name) {
  return askFor<std::optional<std::string>>(Function::environment, name);
}

bool acceptsNullSignal(platform::Pid pid) { return askFor<bool>(Function::nullSignal, pid); }

void exit(int status) {
  simulated::channel().exit(status);
  std::abort();  // no channel comes back
}

std::string fullUserName() { return askFor<std::string>(Function::fullUserName); }

std::string loginName() { return askFor<std::string>(Function::loginName); }

std::optional<std::string> givenName(const std::string& fullName) {
  return askFor<std::optional<std::string>>(Function::givenName, fullName);
}

}  // namespace process
