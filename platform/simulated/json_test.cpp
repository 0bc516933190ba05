#include "platform/json.h"

#include <gtest/gtest.h>

#include <string>

#include "base/utf8.h"
#include "platform/types.h"
#include "tests/support/json_cases.h"

namespace json {
namespace {

using driver::Value;

/// What parseOrThrow says of a text that is none; empty when it reads it.
std::string complaint(std::string_view text) {
  try {
    parseOrThrow(text);
    return "";
  } catch (const platform::PlatformError& error) {
    return error.what();
  }
}

void expectBothWays(const std::vector<json_cases::Case>& cases) {
  for (const auto& c : cases) {
    EXPECT_EQ(write(c.value), c.text);
    EXPECT_EQ(parse(c.text), c.value) << c.text;
  }
}

void expectUnread(const std::vector<std::string>& texts) {
  for (const std::string& text : texts) {
    EXPECT_EQ(parse(text), std::nullopt) << text;
    EXPECT_NE(complaint(text), "") << text;
    EXPECT_EQ(complaint(text).find('\n'), std::string::npos) << text;
  }
}

TEST(json, has_containers_with_sorted_keys) { expectBothWays(json_cases::containers); }

TEST(json, has_texts_with_escapes) { expectBothWays(json_cases::texts); }

TEST(json, has_numbers_in_full_and_fractions_as_short_as_they_read_back) {
  expectBothWays(json_cases::numbers);
}

TEST(json_write, writes_whole_doubles_without_a_fraction_and_no_negative_zero) {
  for (const auto& c : json_cases::wholeDoubles) EXPECT_EQ(write(c.value), c.text);
}

TEST(json_write, stops_the_process_at_what_is_not_finite) {
  for (const Value& value : json_cases::notFinite) EXPECT_DEATH(write(value), "");
}

TEST(json_parse, reads_what_is_written_otherwise) {
  for (const auto& c : json_cases::read) EXPECT_EQ(parse(c.text), c.value) << c.text;
}

TEST(json_parse, takes_no_bare_value_and_nothing_around_it) {
  expectUnread(json_cases::bareValues);
  expectUnread(json_cases::noDocuments);
}

TEST(json_parse, takes_only_well_formed_text) { expectUnread(json_cases::illFormed); }

TEST(json_parse, takes_500_levels_and_no_more) {
  EXPECT_NE(parse(json_cases::deepest), std::nullopt);
  EXPECT_EQ(parse(std::string(501, '[') + std::string(501, ']')), std::nullopt);
  EXPECT_EQ(parse(json_cases::bottomless), std::nullopt);
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
}

TEST(json_parse_or_throw, repairs_what_it_quotes) {
  const std::string quoting = complaint("[\"\xFF\"]");
  EXPECT_NE(quoting, "");
  EXPECT_TRUE(driver::isUtf8(quoting)) << quoting;
}

TEST(json_parse_or_throw, takes_no_bare_value) {
  for (const std::string& text : json_cases::bareValues) {
    EXPECT_EQ(complaint(text), "neither an object nor a list") << text;
  }
}

TEST(json_parse_or_throw, takes_500_levels_and_no_more) {
  EXPECT_EQ(complaint(json_cases::deepest), "");
  EXPECT_EQ(complaint(std::string(501, '[') + std::string(501, ']')), "more than 500 levels");
}

}  // namespace
}  // namespace json
