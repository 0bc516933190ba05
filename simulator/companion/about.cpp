#include "simulator/companion/about.h"

namespace companion {

std::string versionText() { return "simulated-mac " PRODUCT_VERSION; }

std::string timeName(simulator::Scheduler::Time time) {
  return time == simulator::Scheduler::Time::virtualTime ? "virtual" : "real";
}

}  // namespace companion
