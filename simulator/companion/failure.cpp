#include "simulator/companion/failure.h"

#include <cerrno>
#include <cstring>
#include <nlohmann/json.hpp>

namespace companion {

Failure systemFailure(const std::string& whatFailed) {
  return Failure(whatFailed + ": " + std::strerror(errno));
}

std::string failureLine(const std::string& message) {
  const nlohmann::json line{{"error", message}, {"ok", false}};
  return line.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace companion
