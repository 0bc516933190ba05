#include "input/foreground.h"

#include "input/sky.h"

namespace driver {

std::optional<platform::Pid> foregroundPID() {
  const Sky::FrontProcess frontProcess = Sky::frontProcess();
  if (frontProcess == nullptr) return std::nullopt;
  const Sky::ProcessPID processPID = Sky::processPID();
  if (processPID == nullptr) return std::nullopt;
  platform::SerialNumber process;
  if (frontProcess(&process) != platform::statusSuccess) return std::nullopt;
  platform::Pid pid = 0;
  if (processPID(&process, &pid) != platform::statusSuccess) return std::nullopt;
  return pid;
}

}  // namespace driver
