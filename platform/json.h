#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/value.h"

/// JSON text.
namespace json {

/// The value on one line: keys sorted, nothing added between tokens, "/" written as "\/", whole
/// doubles without a fraction, characters beyond ASCII as they are, negative zero as 0. Texts are
/// well-formed UTF-8 and numbers finite: anything else is an error of the caller, which stops the
/// process.
std::string write(const driver::Value& value);

/// The value a JSON text holds: an object or a list, with nothing but white space around it. None
/// for anything else, a bare text or number and ill-formed UTF-8 included. Whole numbers that fit
/// are integers.
std::optional<driver::Value> parse(std::string_view text);

/// The same, but throws PlatformError with the parser's own words for what is none.
driver::Value parseOrThrow(std::string_view text);

}  // namespace json
