#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "base/value.h"

/// What platform/json.h says of values and texts, case by case: the same for both sides of the
/// seam.
namespace json_cases {

using driver::Value;

struct Case {
  Value value;
  std::string text;
};

inline constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
inline constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();
inline constexpr double notNumber = std::numeric_limits<double>::quiet_NaN();
inline constexpr double infinity = std::numeric_limits<double>::infinity();

// Written like this, and read as what was written.
inline const std::vector<Case> containers = {
    {Value::Object{}, "{}"},
    {Value::List{}, "[]"},
    {Value::Object{{"ok", true},
                   {"b", Value::List{1, 2}},
                   {"B", 1},
                   {"a", Value::Object{{"z", 1}, {"y", 2}}}},
     R"({"B":1,"a":{"y":2,"z":1},"b":[1,2],"ok":true})"},
    {Value::Object{{"list", Value::List{}},
                   {"map", Value::Object{}},
                   {"none", Value()},
                   {"text", ""},
                   {"no", false}},
     R"({"list":[],"map":{},"no":false,"none":null,"text":""})"},
};

inline const std::vector<Case> texts = {
    {Value::Object{{"a/b", "/tmp/a.png"}}, R"({"a\/b":"\/tmp\/a.png"})"},
    {Value::List{"\"", "\\", "\b\f\n\r\t", "\x01\x1F", std::string("\0", 1)},
     R"(["\"","\\","\b\f\n\r\t","\u0001\u001f","\u0000"])"},
    {Value::List{"caf\u00E9 \u4F60 \U0001F600 \u2028 \uFFFD"},
     "[\"caf\u00E9 \u4F60 \U0001F600 \u2028 \uFFFD\"]"},
};

inline const std::vector<Case> numbers = {
    {Value::List{smallest, largest, std::uint32_t{4294967295}},
     "[-9223372036854775808,9223372036854775807,4294967295]"},
    {Value::List{0.5, -2.25, 0.1, 1.0 / 3}, "[0.5,-2.25,0.1,0.3333333333333333]"},
};

// Written like this, and read as whole numbers.
inline const std::vector<Case> wholeDoubles = {
    {Value::List{0.0, 1.0, -80.0, 1e15}, "[0,1,-80,1000000000000000]"},
    {Value::List{-0.0}, "[0]"},
};

inline const std::vector<Value> notFinite = {Value::List{notNumber}, Value::List{-infinity}};

// Read like this, though written otherwise.
inline const std::vector<Case> read = {
    {Value::List{}, " \t\r\n[ ] \n"},
    {Value::Object{{"a", Value::List{1, -2, 2.5, true, false, Value(), "t"}},
                   {"b", Value::Object{}}},
     R"({"a" : [1, -2, 2.5, true, false, null, "t"], "b" : {}})"},
    {Value::List{std::string("\"\\/\b\f\n\r\t\u00E9\U0001F600\0", 15)},
     R"(["\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00\u0000"])"},
    {Value::List{9223372036854775808.0, 18446744073709551615.0, 0.5, 1000.0},
     "[9223372036854775808,18446744073709551615,0.5,1e3]"},
    // Brackets in texts nest nothing.
    {Value::List{std::string(900, '[') + "\"["}, "[\"" + std::string(900, '[') + "\\\"[\"]"},
};

// Not read.
inline const std::vector<std::string> bareValues = {"1", "\"text\"", "true", "null"};

inline const std::vector<std::string> noDocuments = {
    "",       " ",       "[1] 2",    "[1],",    "x[1]",     "[1]]",      "[1",
    "{\"a\"", "{\"a\":", "{\"a\":1", "[1,]",    "[,1]",     "{a:1}",     "['a']",
    "[01]",   "[+1]",    "[.5]",     "[1.]",    "[NaN]",    "[1 2]",     "[\"a]",
    "x",      "[1e999]", "[\"\n\"]", "{\"a\"}", "{\"a\":}", "[\"\\x\"]", "// note\n[]",
};

inline const std::vector<std::string> illFormed = {
    "[\"\xFF\"]",
    "[\"\xED\xA0\x80\"]",
    "[\"\xC3\"]",
    "[\"\\uD800\"]",
};

inline const std::string deepest = std::string(500, '[') + std::string(500, ']');
inline const std::string bottomless = std::string(1'000'000, '[');

}  // namespace json_cases
