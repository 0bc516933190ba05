#pragma once

#include <string>

#include "base/value.h"

/// JSON text.
namespace json {

/// The value on one line: keys sorted, nothing added between tokens, "/" written as "\/", whole
/// doubles without a fraction, characters beyond ASCII as they are, negative zero as 0. Texts are
/// well-formed UTF-8 and numbers finite: anything else is an error of the caller, which stops the
/// process.
std::string write(const driver::Value& value);

}  // namespace json
