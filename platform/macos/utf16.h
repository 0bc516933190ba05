#pragma once

#include <string>
#include <string_view>

namespace macos {

/// The text as UTF-8, every surrogate without its partner replaced by U+FFFD.
std::string utf8(std::u16string_view text);

/// The text as UTF-16, every ill-formed part replaced by U+FFFD.
std::u16string utf16(std::string_view text);

}  // namespace macos
