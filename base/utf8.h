#pragma once

#include <string>
#include <string_view>

namespace driver {

/// The text with every ill-formed byte sequence (stray bytes, overlong forms, surrogates, cut ends)
/// replaced by U+FFFD, one for each maximal ill-formed part. A well-formed text comes back as is.
std::string repairedUtf8(std::string_view bytes);

/// True when the bytes are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

}  // namespace driver
