#include "platform/workspace.h"

#include "platform/simulated/channel.h"

namespace workspace {

using platform::Function;
using simulated::askFor;

std::optional<Application> application(platform::Pid pid) {
  return askFor<std::optional<Application>>(Function::application, pid);
}

std::vector<Application> applications(const std::string& bundleIdentifier) {
  return askFor<std::vector<Application>>(Function::applicationsWithBundle, bundleIdentifier);
}

std::vector<Application> applications() {
  return askFor<std::vector<Application>>(Function::applications);
}

std::optional<Application> frontmost() {
  return askFor<std::optional<Application>>(Function::frontmost);
}

bool unhide(platform::Pid pid) { return askFor<bool>(Function::unhide, pid); }

std::optional<ActivationPolicy> activationPolicy(platform::Pid pid) {
  return askFor<std::optional<ActivationPolicy>>(Function::activationPolicy, pid);
}

bool terminated(platform::Pid pid) { return askFor<bool>(Function::terminated, pid); }

void prohibitOwnActivation() { simulated::ask(Function::prohibitOwnActivation); }

}  // namespace workspace
