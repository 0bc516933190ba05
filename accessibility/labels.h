#pragma once

#include <string>
#include <string_view>

namespace driver {

/// The text with every run of white space made one space, and none at the ends.
std::string squashed(std::string_view text);

/// The same in lower case: labels that look alike compare equal.
std::string normalizedLabel(std::string_view text);

/// The same in a form in which two that are canonically equivalent have equal bytes, and one that
/// contains the other contains its bytes.
std::string comparableLabel(std::string_view text);

/// A role as replies show it: without a leading "AX", in lower case.
std::string roleName(std::string_view role);

}  // namespace driver
