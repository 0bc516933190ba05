#include "tests/soak/schema.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

using nlohmann::json;
using soak::Schema;

bool admits(const char* schema, const char* value) {
  return Schema(json::parse(schema)).admits(json::parse(value));
}

TEST(json_schema, admits_the_types_and_values_that_it_names) {
  EXPECT_TRUE(admits(R"({"type":"integer","minimum":0,"maximum":3})", "3"));
  EXPECT_FALSE(admits(R"({"type":"integer","minimum":0,"maximum":3})", "4"));
  EXPECT_FALSE(admits(R"({"type":"integer"})", "1.5"));
  EXPECT_TRUE(admits(R"({"type":"number"})", "1"));
  EXPECT_FALSE(admits(R"({"type":"string","enum":["a"]})", "\"b\""));
  EXPECT_FALSE(admits(R"({"not":{"type":"integer","enum":[0]}})", "0"));
  EXPECT_FALSE(admits(R"({"type":"string","maxLength":1})", "\"\u00e9a\""));
}

TEST(json_schema, admits_the_properties_that_it_names) {
  const char* const closed = R"({"type":"object","properties":{"a":{"type":"null"}},
      "required":["a"],"additionalProperties":false})";
  EXPECT_TRUE(admits(closed, R"({"a":null})"));
  EXPECT_FALSE(admits(closed, R"({"a":0})"));
  EXPECT_FALSE(admits(closed, R"({})"));
  EXPECT_FALSE(admits(closed, R"({"a":null,"b":1})"));
  EXPECT_FALSE(admits(R"({"additionalProperties":{"type":"null"}})", R"({"b":1})"));
  EXPECT_FALSE(admits(R"({"dependentRequired":{"a":["b"]}})", R"({"a":1})"));
}

TEST(json_schema, admits_lists_alternatives_and_what_it_refers_to) {
  const char* const lists =
      R"({"type":"array","items":{"$ref":"#/$defs/x"},"minItems":1,"maxItems":2,
          "$defs":{"x":{"anyOf":[{"type":"null"},{"type":"boolean"}]}}})";
  EXPECT_TRUE(admits(lists, "[null,true]"));
  EXPECT_FALSE(admits(lists, "[1]"));
  EXPECT_FALSE(admits(lists, "[]"));
  EXPECT_FALSE(admits(lists, "[null,null,null]"));
}

TEST(json_schema, admits_texts_of_a_pattern_of_literal_pieces) {
  const char* const pattern = R"({"pattern":"^no \\([\\s\\S]*\\) in [\\s\\S]*$"})";
  EXPECT_TRUE(admits(pattern, R"("no (a\nb) in c")"));
  EXPECT_FALSE(admits(pattern, R"("no (a) on c")"));
  EXPECT_FALSE(admits(pattern, R"("xno (a) in c")"));
}

TEST(json_schema, names_the_alternative_that_admits) {
  const Schema schema(
      json::parse(R"({"anyOf":[{"title":"No","type":"null"},{"title":"Yes","type":"boolean"}]})"));
  EXPECT_EQ(schema.alternativeOf(json(true)), "Yes");
  EXPECT_EQ(schema.alternativeOf(json(1)), "");
}

TEST(json_schema, refuses_to_pass_over_what_it_does_not_know) {
  EXPECT_THROW(Schema(json::parse(R"({"oneOf":[]})")), std::runtime_error);
  EXPECT_THROW(Schema(json::parse(R"({"pattern":"^[a-z]+$"})")), std::runtime_error);
  EXPECT_THROW(Schema(json::parse(R"({"type":"text"})")), std::runtime_error);
}

}  // namespace
