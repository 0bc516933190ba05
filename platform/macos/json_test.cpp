#include "platform/json.h"

#include "platform/macos/standins/fixture.h"
#include "tests/support/json_cases.h"

namespace {

class json_text : public standins::AdapterTest {
 protected:
  static void expectBothWays(const std::vector<json_cases::Case>& cases) {
    for (const auto& c : cases) {
      EXPECT_EQ(json::write(c.value), c.text);
      EXPECT_EQ(json::parse(c.text), c.value) << c.text;
    }
  }
  static void expectUnread(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
      EXPECT_EQ(json::parse(text), std::nullopt) << text;
      EXPECT_EQ(errorOf([&] { json::parseOrThrow(text); }), "no JSON") << text;
    }
  }
};
using json_write = json_text;
using json_parse = json_text;
using json_parse_or_throw = json_text;

}  // namespace

TEST_F(json_text, has_containers_with_sorted_keys) { expectBothWays(json_cases::containers); }

TEST_F(json_text, has_texts_with_escapes) { expectBothWays(json_cases::texts); }

TEST_F(json_text, has_numbers_in_full_and_fractions_as_short_as_they_read_back) {
  expectBothWays(json_cases::numbers);
}

TEST_F(json_write, writes_whole_doubles_without_a_fraction_and_no_negative_zero) {
  for (const auto& c : json_cases::wholeDoubles) EXPECT_EQ(json::write(c.value), c.text);
}

TEST_F(json_write, stops_the_process_at_what_is_not_finite) {
  for (const driver::Value& value : json_cases::notFinite) {
    EXPECT_DEATH(json::write(value), "raised: a number that is not finite");
  }
}

TEST_F(json_parse, reads_what_is_written_otherwise) {
  for (const auto& c : json_cases::read) EXPECT_EQ(json::parse(c.text), c.value) << c.text;
}

TEST_F(json_parse, takes_no_bare_value_and_nothing_around_it) {
  expectUnread(json_cases::bareValues);
  expectUnread(json_cases::noDocuments);
}

TEST_F(json_parse, takes_only_well_formed_text) { expectUnread(json_cases::illFormed); }

TEST_F(json_parse, takes_500_levels_and_not_any_number) {
  EXPECT_NE(json::parse(json_cases::deepest), std::nullopt);
  EXPECT_EQ(json::parse(json_cases::bottomless), std::nullopt);
}

TEST_F(json_parse_or_throw, reads_what_parse_reads) {
  for (const auto& c : json_cases::containers) EXPECT_EQ(json::parseOrThrow(c.text), c.value);
}
