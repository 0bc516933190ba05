#include "simulator/mac/json_text.h"

#include <nlohmann/json.hpp>

#include "simulator/mac/datum_text.h"

namespace simulator {

nlohmann::json textJson(const std::string& bytes, std::size_t bytesMax) {
  if (!isReadable(bytes)) return {{"hex", hexOf(bytes)}};
  return beginningOf(bytes, bytesMax);
}

std::string jsonLine(const nlohmann::json& value) {
  return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace simulator
