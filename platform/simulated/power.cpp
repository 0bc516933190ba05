#include "platform/power.h"

#include "platform/simulated/channel.h"

namespace power {

Assertion preventDisplaySleep(const std::string& name) {
  return simulated::askFor<Assertion>(platform::Function::preventDisplaySleep, name);
}

}  // namespace power
