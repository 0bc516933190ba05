#include "platform/json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "base/utf8.h"
#include "platform/types.h"

namespace json {
namespace {

using driver::Value;

TEST(json_write, sorts_keys_and_adds_nothing_between_tokens) {
  const Value value(Value::Object{
      {"ok", true}, {"b", Value::List{1, 2}}, {"B", 1}, {"a", Value::Object{{"z", 1}, {"y", 2}}}});
  EXPECT_EQ(write(value), R"({"B":1,"a":{"y":2,"z":1},"b":[1,2],"ok":true})");
}

TEST(json_write, writes_empty_containers_and_null) {
  EXPECT_EQ(write(Value::Object{{"list", Value::List{}},
                                {"map", Value::Object{}},
                                {"none", Value()},
                                {"text", ""},
                                {"no", false}}),
            R"({"list":[],"map":{},"no":false,"none":null,"text":""})");
}

TEST(json_write, escapes_the_slash_in_texts_and_keys) {
  EXPECT_EQ(write(Value::Object{{"a/b", "/tmp/a.png"}}), R"({"a\/b":"\/tmp\/a.png"})");
}

TEST(json_write, escapes_quotes_backslashes_and_control_characters) {
  EXPECT_EQ(write(Value::List{"\"", "\\", "\b\f\n\r\t", "\x01\x1F", std::string("\0", 1)}),
            R"(["\"","\\","\b\f\n\r\t","\u0001\u001f","\u0000"])");
}

TEST(json_write, keeps_characters_beyond_ascii) {
  EXPECT_EQ(write(Value::List{"caf\u00E9 \u4F60 \U0001F600 \u2028 \uFFFD"}),
            "[\"caf\u00E9 \u4F60 \U0001F600 \u2028 \uFFFD\"]");
}

TEST(json_write, writes_integers_in_full) {
  EXPECT_EQ(write(Value::List{std::numeric_limits<std::int64_t>::min(),
                              std::numeric_limits<std::int64_t>::max(), std::uint32_t{4294967295}}),
            "[-9223372036854775808,9223372036854775807,4294967295]");
}

TEST(json_write, writes_whole_doubles_without_a_fraction) {
  EXPECT_EQ(write(Value::List{0.0, 1.0, -80.0, 1e15}), "[0,1,-80,1000000000000000]");
}

TEST(json_write, writes_negative_zero_as_zero) { EXPECT_EQ(write(Value::List{-0.0}), "[0]"); }

TEST(json_write, writes_fractions_as_short_as_they_read_back) {
  EXPECT_EQ(write(Value::List{0.5, -2.25, 0.1, 1.0 / 3}), "[0.5,-2.25,0.1,0.3333333333333333]");
}

TEST(json_write, stops_the_process_at_what_is_not_finite) {
  EXPECT_DEATH(write(Value::List{std::numeric_limits<double>::quiet_NaN()}), "");
  EXPECT_DEATH(write(Value::List{-std::numeric_limits<double>::infinity()}), "");
}

TEST(json_parse, reads_objects_and_lists_of_everything) {
  EXPECT_EQ(parse(R"({"a":[1,-2,2.5,true,false,null,"t"],"b":{}})"),
            Value(Value::Object{{"a", Value::List{1, -2, 2.5, true, false, Value(), "t"}},
                                {"b", Value::Object{}}}));
  EXPECT_EQ(parse(" \t\r\n[ ] \n"), Value(Value::List{}));
}

TEST(json_parse, takes_no_bare_value_and_nothing_around_it) {
  for (const char* text :
       {"",      " ",     "1",     "\"text\"", "true",        "null",     "[1] 2",
        "[1],",  "x[1]",  "[1]]",  "[1",       "{\"a\":1",    "{\"a\"}",  "[1,]",
        "[,1]",  "{a:1}", "['a']", "[01]",     "[+1]",        "[.5]",     "[1.]",
        "[NaN]", "[1 2]", "[\"a]", "[\"\n\"]", "// note\n[]", "[\"\\x\"]"}) {
    EXPECT_EQ(parse(text), std::nullopt) << text;
  }
}

TEST(json_parse, takes_only_well_formed_text) {
  EXPECT_EQ(parse("[\"\xFF\"]"), std::nullopt);
  EXPECT_EQ(parse("[\"\xED\xA0\x80\"]"), std::nullopt);
  EXPECT_EQ(parse("[\"\xC3\"]"), std::nullopt);
  EXPECT_EQ(parse("[\"\\uD800\"]"), std::nullopt);
}

TEST(json_parse, resolves_escapes) {
  EXPECT_EQ(parse(R"(["\"\\\/\b\f\n\r\t\u00e9\ud83d\ude00\u0000"])"),
            Value(Value::List{std::string("\"\\/\b\f\n\r\t\u00E9\U0001F600\0", 15)}));
}

TEST(json_parse, gives_whole_numbers_that_fit_as_integers) {
  EXPECT_EQ(parse("[9223372036854775807,-9223372036854775808,0,-1]"),
            Value(Value::List{std::numeric_limits<std::int64_t>::max(),
                              std::numeric_limits<std::int64_t>::min(), 0, -1}));
  EXPECT_EQ(parse("[9223372036854775808,18446744073709551615,0.5,1e3]"),
            Value(Value::List{9223372036854775808.0, 18446744073709551615.0, 0.5, 1000.0}));
}

TEST(json_parse, takes_500_levels_and_no_more) {
  EXPECT_NE(parse(std::string(500, '[') + std::string(500, ']')), std::nullopt);
  EXPECT_EQ(parse(std::string(501, '[') + std::string(501, ']')), std::nullopt);
  EXPECT_EQ(parse(std::string(1'000'000, '[')), std::nullopt);
  // Brackets in texts nest nothing.
  EXPECT_EQ(parse("[\"" + std::string(900, '[') + "\\\"[\"]"),
            Value(Value::List{std::string(900, '[') + "\"["}));
}

/// What parseOrThrow says of a text that is none; empty when it reads it.
std::string complaint(std::string_view text) {
  try {
    parseOrThrow(text);
    return "";
  } catch (const platform::PlatformError& error) {
    return error.what();
  }
}

TEST(json_parse_or_throw, reads_what_parse_reads) {
  for (const char* text : {"{}", " [1,\"a\",{\"b\":[true,null,0.5]}]\n"}) {
    EXPECT_EQ(parseOrThrow(text), parse(text)) << text;
  }
}

TEST(json_parse_or_throw, has_the_parsers_words_for_what_is_no_json) {
  EXPECT_EQ(complaint("{\"a\":}"),
            "[json.exception.parse_error.101] parse error at line 1, column 6: syntax error while "
            "parsing value - unexpected '}'; expected '[', '{', or a literal");
  for (const char* text : {"", "x", "[1] 2", "{\"a\"}", "[1,]", "[1e999]", "[\"\\uD800\"]"}) {
    EXPECT_EQ(parse(text), std::nullopt) << text;
    EXPECT_NE(complaint(text), "") << text;
    EXPECT_EQ(complaint(text).find('\n'), std::string::npos) << text;
  }
}

TEST(json_parse_or_throw, repairs_what_it_quotes) {
  const std::string quoting = complaint("[\"\xFF\"]");
  EXPECT_NE(quoting, "");
  EXPECT_TRUE(driver::isUtf8(quoting)) << quoting;
}

TEST(json_parse_or_throw, takes_no_bare_value) {
  for (const char* text : {"1", "true", "null", "\"text\""}) {
    EXPECT_EQ(complaint(text), "neither an object nor a list") << text;
  }
}

TEST(json_parse_or_throw, takes_500_levels_and_no_more) {
  EXPECT_EQ(complaint(std::string(500, '[') + std::string(500, ']')), "");
  EXPECT_EQ(complaint(std::string(501, '[') + std::string(501, ']')), "more than 500 levels");
}

TEST(json_parse, reads_back_what_was_written) {
  const Value value(Value::Object{{"a/b", Value::List{1, 0.1, "caf\u00E9 \u2028", true, Value()}},
                                  {"z", Value::Object{}}});
  EXPECT_EQ(parse(write(value)), value);
}

}  // namespace
}  // namespace json
