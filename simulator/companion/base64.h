#pragma once

#include <string>
#include <string_view>

namespace companion {

/// Bytes as text, in the alphabet of RFC 4648.
std::string base64(std::string_view bytes);

}  // namespace companion
