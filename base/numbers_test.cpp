#include "base/numbers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace driver {
namespace {

TEST(parseDouble, reads_decimal_and_hexadecimal_numbers) {
  EXPECT_EQ(parseDouble("0"), 0);
  EXPECT_EQ(parseDouble("12"), 12);
  EXPECT_EQ(parseDouble("-1"), -1);
  EXPECT_EQ(parseDouble("+2.5"), 2.5);
  EXPECT_EQ(parseDouble(".5"), 0.5);
  EXPECT_EQ(parseDouble("5."), 5);
  EXPECT_EQ(parseDouble("1e3"), 1000);
  EXPECT_EQ(parseDouble("1E-2"), 0.01);
  EXPECT_EQ(parseDouble("0x1p4"), 16);
  EXPECT_EQ(parseDouble("-0XA"), -10);
  EXPECT_EQ(parseDouble("007"), 7);
  EXPECT_EQ(parseDouble("1e308"), 1e308);
}

TEST(parseDouble, keeps_the_sign_of_zero) {
  EXPECT_TRUE(std::signbit(parseDouble("-0").value()));
  EXPECT_FALSE(std::signbit(parseDouble("0").value()));
}

TEST(parseDouble, reads_infinities_and_nan_in_any_case) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_EQ(parseDouble("inf"), infinity);
  EXPECT_EQ(parseDouble("-Infinity"), -infinity);
  EXPECT_EQ(parseDouble("+INF"), infinity);
  EXPECT_TRUE(std::isnan(parseDouble("nan").value()));
  EXPECT_TRUE(std::isnan(parseDouble("-NaN").value()));
}

TEST(parseDouble, makes_an_infinity_of_what_is_too_large) {
  EXPECT_EQ(parseDouble("1e400"), std::numeric_limits<double>::infinity());
  EXPECT_EQ(parseDouble("-1e400"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(parseDouble(std::string(1000, '9')), std::numeric_limits<double>::infinity());
  EXPECT_EQ(parseDouble("1e-400"), 0);
}

TEST(parseDouble, refuses_what_is_no_number_as_a_whole) {
  for (const char* text : {"",    " ",   " 1",    "1 ",     "\t1",    "1\n",    "12px",  "px12",
                           "1,5", "1 2", "--1",   "+-1",    "- 1",    "+",      "-",     ".",
                           "e3",  "1e",  "1e+",   "0x",     "0xg",    "nan(1)", "nan()", "infinit",
                           "in",  "na",  "1_000", "\u0661", "\uFF11", "1\u00A0"}) {
    EXPECT_EQ(parseDouble(text), std::nullopt) << "'" << text << "'";
  }
}

TEST(parseDouble, does_not_stop_at_a_zero_byte) {
  EXPECT_EQ(parseDouble(std::string("1\0", 2)), std::nullopt);
  EXPECT_EQ(parseDouble(std::string("1\0002", 3)), std::nullopt);
}

TEST(parseInt32, reads_an_optional_sign_and_digits) {
  EXPECT_EQ(parseInt32("0"), 0);
  EXPECT_EQ(parseInt32("41"), 41);
  EXPECT_EQ(parseInt32("+41"), 41);
  EXPECT_EQ(parseInt32("-41"), -41);
  EXPECT_EQ(parseInt32("-0"), 0);
  EXPECT_EQ(parseInt32("0041"), 41);
}

TEST(parseInt32, reads_its_whole_range_and_no_more) {
  EXPECT_EQ(parseInt32("2147483647"), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(parseInt32("-2147483648"), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(parseInt32("2147483648"), std::nullopt);
  EXPECT_EQ(parseInt32("-2147483649"), std::nullopt);
  EXPECT_EQ(parseInt32("99999999999"), std::nullopt);
  EXPECT_EQ(parseInt32(std::string(1000, '9')), std::nullopt);
}

TEST(parseInt32, refuses_anything_else) {
  for (const char* text : {"", "+", "-", " 1", "1 ", "1.0", "1e3", "0x10", "abc", "1a", "+-1",
                           "-+1", "++1", "--1", "1,000", "\u0661"}) {
    EXPECT_EQ(parseInt32(text), std::nullopt) << "'" << text << "'";
  }
  EXPECT_EQ(parseInt32(std::string("1\0", 2)), std::nullopt);
}

TEST(parseInt32, reads_a_part_of_a_longer_text) {
  const std::string_view digits = "123456";
  EXPECT_EQ(parseInt32(digits.substr(0, 2)), 12);
  EXPECT_EQ(parseInt32(digits.substr(2, 2)), 34);
  EXPECT_EQ(parseInt32(digits.substr(0, 0)), std::nullopt);
}

TEST(parseInt64, reads_its_whole_range_and_no_more) {
  EXPECT_EQ(parseInt64("9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseInt64("+9223372036854775807"), std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(parseInt64("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(parseInt64("9223372036854775808"), std::nullopt);
  EXPECT_EQ(parseInt64("-9223372036854775809"), std::nullopt);
}

TEST(parseUint32, reads_its_whole_range_and_no_more) {
  EXPECT_EQ(parseUint32("0"), 0U);
  EXPECT_EQ(parseUint32("-0"), 0U);
  EXPECT_EQ(parseUint32("+7"), 7U);
  EXPECT_EQ(parseUint32("4294967295"), std::numeric_limits<std::uint32_t>::max());
  EXPECT_EQ(parseUint32("4294967296"), std::nullopt);
  EXPECT_EQ(parseUint32("-1"), std::nullopt);
  EXPECT_EQ(parseUint32(""), std::nullopt);
}

TEST(exactInteger, is_a_whole_number_that_is_the_only_one_of_its_double) {
  EXPECT_EQ(exactInteger(0), 0);
  EXPECT_EQ(exactInteger(-0.0), 0);
  EXPECT_EQ(exactInteger(-3), -3);
  EXPECT_EQ(exactInteger(9007199254740991.0), 9007199254740991);
  EXPECT_EQ(exactInteger(9007199254740992.0), 9007199254740992);
  EXPECT_EQ(exactInteger(-9007199254740992.0), -9007199254740992);
  const double infinity = std::numeric_limits<double>::infinity();
  for (const double number : {0.5, -2.5, 9007199254740994.0, -9007199254740994.0, 1e300, infinity,
                              std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(exactInteger(number), std::nullopt) << number;
  }
}

TEST(decimalText, has_the_fewest_digits_that_tell_the_number) {
  EXPECT_EQ(decimalText(0), "0");
  EXPECT_EQ(decimalText(-0.0), "0");
  EXPECT_EQ(decimalText(100'000), "100000");
  EXPECT_EQ(decimalText(-3), "-3");
  EXPECT_EQ(decimalText(9007199254740991.0), "9007199254740991");
  EXPECT_EQ(decimalText(0.1), "0.1");
  EXPECT_EQ(decimalText(0.1 + 0.2), "0.30000000000000004");
  EXPECT_EQ(decimalText(-2.5), "-2.5");
  EXPECT_EQ(decimalText(1e300), "1e+300");
}

}  // namespace
}  // namespace driver
