#include "simulator/rules/left_behind.h"

#include <algorithm>

namespace simulator {

namespace {

std::string nameOf(const Application& application) {
  return application.name.value_or("pid:" + std::to_string(application.pid));
}

/// The end of a sentence about a process that was killed; empty for any other one.
std::string blameOf(const Mac& mac, Pid pid) {
  if (mac.killed.count(pid) == 0) return "";
  return " by process " + std::to_string(pid) + ", which was killed";
}

void addPressed(const Mac& mac, const Application& application, Violations& violations) {
  for (const HeldKey& key : application.keysDown) {
    const std::string blame = blameOf(mac, key.by);
    if (blame.empty()) continue;
    violations.push_back("I27: key " + std::to_string(key.code) + " is held down in " +
                         nameOf(application) + blame);
  }
  const ClickProgress& click = application.click;
  const std::string blame = click.pressedType ? blameOf(mac, click.pressedBy) : "";
  if (!blame.empty()) {
    violations.push_back("I27: a button is held down in " + nameOf(application) + blame);
  }
}

/// An application that is in front has its focus anyway.
void addFocus(const Mac& mac, const Application& application, Violations& violations) {
  if (application.focusByRecord == 0 || application.pid == mac.world.frontmost) return;
  const std::string blame = blameOf(mac, application.focusGivenBy);
  if (blame.empty()) return;
  violations.push_back("I27: focus is held in window " + std::to_string(application.focusByRecord) +
                       " of " + nameOf(application) + blame);
}

}  // namespace

bool holdsAnything(const Mac& mac, Pid pid) {
  const auto& applications = mac.world.applications;
  return std::any_of(applications.begin(), applications.end(), [&](const Application& each) {
    const auto& keys = each.keysDown;
    const bool holdsKey =
        std::any_of(keys.begin(), keys.end(), [&](const HeldKey& key) { return key.by == pid; });
    return holdsKey || (each.focusByRecord != 0 && each.focusGivenBy == pid) ||
           (each.click.pressedType && each.click.pressedBy == pid);
  });
}

bool isAlive(const Mac& mac, Pid pid) { return mac.world.processes.count(pid) != 0; }

Violations leftBehind(const Mac& mac) {
  Violations violations;
  for (const Application& application : mac.world.applications) {
    if (!application.running) continue;
    addFocus(mac, application, violations);
    addPressed(mac, application, violations);
  }
  return violations;
}

}  // namespace simulator
