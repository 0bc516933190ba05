#include "capture/liveness.h"

#include <cstdint>
#include <optional>
#include <string>

#include "base/numbers.h"
#include "main/replies.h"
#include "platform/process.h"

namespace driver {

bool isCaptureAlive() {
  const std::optional<std::string> value = process::environment("CU_CAPTURE_PID");
  const std::optional<std::int32_t> pid = value ? parseInt32(*value) : std::nullopt;
  // A malformed id disables the check rather than all input: no client of a service writes one.
  return !pid || process::acceptsNullSignal(*pid);
}

void requireCaptureAlive() {
  if (!isCaptureAlive()) fail("native screen sharing stopped; background input is disabled");
}

}  // namespace driver
