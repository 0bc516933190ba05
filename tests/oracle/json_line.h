#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace oracle {

using Json = nlohmann::json;

/// The reply as it is written: keys sorted by their bytes, nothing between tokens, a slash as `\/`,
/// a whole number without a fraction, and a line feed.
std::string jsonLine(const Json& reply);

/// A number as replies have it.
std::string numberText(double number);

}  // namespace oracle
