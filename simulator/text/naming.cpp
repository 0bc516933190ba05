#include "simulator/text/naming.h"

#include <algorithm>
#include <iterator>

#include "base/numbers.h"
#include "simulator/text/nearest.h"
#include "simulator/text/words.h"
#include "simulator/world/roles.h"

namespace simulator {

std::string nameOf(const Application& application) {
  return application.name.value_or("pid " + std::to_string(application.pid));
}

std::optional<Pid> pidWritten(std::string_view name) {
  if (!name.starts_with(pidPrefix)) return std::nullopt;
  return driver::parseInt32(name.substr(pidPrefix.size()));
}

std::string writtenName(Pid pid, const World* world) {
  const std::string number = std::string(pidPrefix) + std::to_string(pid);
  if (world == nullptr) return number;
  // Also one that has quit just now.
  const auto& all = world->applications;
  const auto own = std::find_if(all.begin(), all.end(),
                                [&](const Application& each) { return each.pid == pid; });
  if (own == all.end() || !own->name || pidWritten(*own->name)) return number;
  const auto namesakes = std::count_if(
      all.begin(), all.end(), [&](const Application& each) { return each.name == own->name; });
  return namesakes == 1 ? quotedWord(*own->name) : number;
}

Pid applicationNamed(const Spot& spot, const World& world, const std::string& name) {
  const auto& all = world.applications;
  const auto fail = [&](const std::string& cause, const std::string& meant = "") {
    throw WorldError({spot, cause, meant, {}, name});
  };
  if (name.starts_with(pidPrefix)) {
    const auto pid = pidWritten(name);
    if (!pid || findApplication(world, *pid) == nullptr) {
      fail("no application '" + name + "' is running");
    }
    return *pid;
  }
  const auto isNamed = [&](const Application& each) { return each.running && each.name == name; };
  const auto found = std::find_if(all.begin(), all.end(), isNamed);
  if (found == all.end()) {
    std::vector<std::string> names;
    for (const Application& each : all) names.push_back(each.name.value_or(""));
    fail("no application '" + name + "' is running", nearest(name, names));
  }
  if (std::find_if(std::next(found), all.end(), isNamed) != all.end()) {
    fail("several applications are called '" + name + "'; name one as pid:N");
  }
  return found->pid;
}

void failUnlabelled(const Spot& spot, const Application& application, const std::string& label) {
  std::vector<std::string> labels;
  for (const Element& each : application.elements) {
    if (!each.removed && !isWindowRole(each.role)) labels.push_back(labelOf(each));
  }
  throw WorldError({spot,
                    "no element of " + nameOf(application) + " is labelled \"" + label + '"',
                    nearest(label, labels),
                    {},
                    label});
}

}  // namespace simulator
