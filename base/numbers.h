#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace driver {

/// The whole text as a floating-point number, in decimal or hexadecimal notation, "inf",
/// "infinity" and "nan" included. None for an empty text, blanks anywhere, or trailing characters.
/// A number beyond the range of a double is an infinity.
std::optional<double> parseDouble(std::string_view text);

/// The whole text as a decimal integer: an optional "+" or "-", then digits only. None for anything
/// else, and for a value outside the type's range. An unsigned type takes "-0" only.
std::optional<std::int32_t> parseInt32(std::string_view text);
std::optional<std::int64_t> parseInt64(std::string_view text);
std::optional<std::uint32_t> parseUint32(std::string_view text);

/// The number as an integer when it is a whole one, of 2 to the 53 at most: beyond that not every
/// integer has a double of its own.
std::optional<std::int64_t> exactInteger(double number);

/// A finite number in as few decimal digits as tell it from all others; a whole one without a
/// fraction or an exponent, as long as it is an `exactInteger`.
std::string decimalText(double number);

}  // namespace driver
