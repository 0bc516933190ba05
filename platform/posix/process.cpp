#include "platform/posix/process.h"

#include <signal.h>

#include <cstdlib>

namespace posix {

std::optional<std::string> environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

bool acceptsNullSignal(std::int32_t pid) { return kill(pid, 0) == 0; }

}  // namespace posix
