#include "simulator/text/naming.h"

#include <algorithm>
#include <iterator>

#include "base/numbers.h"
#include "simulator/text/error.h"

namespace simulator {

std::string nameOf(const Application& application) {
  return application.name.value_or("pid " + std::to_string(application.pid));
}

Pid applicationNamed(std::size_t line, const World& world, const std::string& name) {
  const auto fail = [&](const std::string& cause) { throw WorldError(line, cause); };
  if (name.starts_with(pidPrefix)) {
    const auto pid = driver::parseInt32(std::string_view(name).substr(pidPrefix.size()));
    if (!pid || findApplication(world, *pid) == nullptr) {
      fail("no application '" + name + "' is running");
    }
    return *pid;
  }
  const auto isNamed = [&](const Application& each) { return each.running && each.name == name; };
  const auto& all = world.applications;
  const auto found = std::find_if(all.begin(), all.end(), isNamed);
  if (found == all.end()) fail("no application '" + name + "' is running");
  if (std::find_if(std::next(found), all.end(), isNamed) != all.end()) {
    fail("several applications are called '" + name + "'; name one as pid:N");
  }
  return found->pid;
}

}  // namespace simulator
