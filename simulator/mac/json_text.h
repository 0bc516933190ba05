#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

namespace simulator {

/// A text as JSON, cut to this many bytes at most; bytes that are none as `{"hex": "0d00ff"}`.
nlohmann::json textJson(const std::string& bytes, std::size_t bytesMax = std::string::npos);

/// The value as one line of well-formed UTF-8, keys sorted, without a line feed.
std::string jsonLine(const nlohmann::json& value);

}  // namespace simulator
