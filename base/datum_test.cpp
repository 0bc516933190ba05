#include "base/datum.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace driver {

struct Pair {
  std::int32_t number = 0;
  std::optional<std::string> text;
  friend bool operator==(const Pair&, const Pair&) = default;
};

template <>
struct Members<Pair> {
  static constexpr auto members = std::tuple{&Pair::number, &Pair::text};
};

namespace {

enum class Colour : std::uint8_t { red, green };

std::string bytesOf(const Datum& datum) {
  std::string bytes;
  encode(datum, bytes);
  return bytes;
}

Datum decoded(std::string_view bytes) {
  const Datum datum = decode(bytes);
  EXPECT_EQ(bytes, "");
  return datum;
}

/// Lists nested in each other, the innermost empty.
Datum nested(int depth) {
  Datum datum(Datum::List{});
  for (int i = 1; i < depth; ++i) datum = Datum(Datum::List{datum});
  return datum;
}

TEST(datum, travels_as_bytes_and_back) {
  const Datum data[] = {
      Datum(),
      Datum(true),
      Datum(false),
      Datum(std::int64_t{0}),
      Datum(std::numeric_limits<std::int64_t>::min()),
      Datum(std::numeric_limits<std::int64_t>::max()),
      Datum(0.1),
      Datum(std::numeric_limits<double>::infinity()),
      Datum(std::string()),
      Datum(std::string("a\0b\xFF", 4)),
      Datum(std::string(100'000, 'x')),
      Datum(Datum::List{}),
      Datum(Datum::List{Datum(), Datum(true), Datum(Datum::List{Datum(std::string("in"))})}),
  };
  for (const Datum& datum : data) EXPECT_EQ(decoded(bytesOf(datum)), datum);
}

TEST(datum, keeps_nan_and_negative_zero) {
  EXPECT_TRUE(std::isnan(unpack<double>(decoded(bytesOf(Datum(std::nan("")))))));
  EXPECT_TRUE(std::signbit(unpack<double>(decoded(bytesOf(Datum(-0.0))))));
}

TEST(datum, has_a_fixed_form_as_bytes) {
  EXPECT_EQ(bytesOf(Datum()), std::string("\0", 1));
  EXPECT_EQ(bytesOf(Datum(true)), std::string("\1\1", 2));
  EXPECT_EQ(bytesOf(Datum(std::int64_t{258})), std::string("\2\2\1\0\0\0\0\0\0", 9));
  EXPECT_EQ(bytesOf(Datum(1.0)), std::string("\3\0\0\0\0\0\0\xF0\x3F", 9));
  EXPECT_EQ(bytesOf(Datum(std::string("hi"))), std::string("\4\2\0\0\0hi", 7));
  EXPECT_EQ(bytesOf(Datum(Datum::List{Datum()})), std::string("\5\1\0\0\0\0", 6));
}

TEST(datum, leaves_the_bytes_that_follow) {
  std::string bytes = bytesOf(Datum(std::int64_t{1})) + bytesOf(Datum(std::string("two")));
  std::string_view rest = bytes;
  EXPECT_EQ(decode(rest), Datum(std::int64_t{1}));
  EXPECT_EQ(decode(rest), Datum(std::string("two")));
  EXPECT_EQ(rest, "");
}

TEST(datum, refuses_bytes_that_end_too_soon) {
  const Datum datum(
      Datum::List{Datum(true), Datum(std::int64_t{5}), Datum(0.5), Datum(std::string("text"))});
  const std::string bytes = bytesOf(datum);
  for (std::size_t length = 0; length < bytes.size(); ++length) {
    std::string_view cut = std::string_view(bytes).substr(0, length);
    EXPECT_THROW(decode(cut), MalformedDatum) << length;
  }
}

TEST(datum, refuses_an_unknown_kind) {
  for (int kind = 6; kind < 256; ++kind) {
    const std::string bytes(20, static_cast<char>(kind));
    std::string_view view = bytes;
    EXPECT_THROW(decode(view), MalformedDatum) << kind;
  }
}

TEST(datum, refuses_lengths_beyond_the_bytes) {
  for (const char kind : {'\4', '\5'}) {
    const std::string bytes = kind + std::string("\xFF\xFF\xFF\xFF", 4);
    std::string_view view = bytes;
    EXPECT_THROW(decode(view), MalformedDatum);
  }
}

TEST(datum, nests_sixty_four_lists_deep_and_no_deeper) {
  EXPECT_EQ(decoded(bytesOf(nested(65))), nested(65));  // one, and 64 in it
  const std::string bytes = bytesOf(nested(66));
  std::string_view view = bytes;
  EXPECT_THROW(decode(view), MalformedDatum);
}

TEST(pack, turns_values_into_data_and_back) {
  EXPECT_EQ(pack(true), Datum(true));
  EXPECT_EQ(pack(7U), Datum(std::int64_t{7}));
  EXPECT_EQ(pack(Colour::green), Datum(std::int64_t{1}));
  EXPECT_EQ(pack("text"), Datum(std::string("text")));
  EXPECT_EQ(pack(std::vector<int>{1, 2}),
            Datum(Datum::List{Datum(std::int64_t{1}), Datum(std::int64_t{2})}));
  EXPECT_EQ(pack(std::optional<int>()), Datum());
  EXPECT_EQ(pack(std::optional<int>(3)), Datum(Datum::List{Datum(std::int64_t{3})}));

  EXPECT_EQ(unpack<Colour>(pack(Colour::green)), Colour::green);
  EXPECT_EQ(unpack<std::int32_t>(pack(-5)), -5);
  EXPECT_EQ(unpack<std::string>(pack("text")), "text");
  EXPECT_EQ(unpack<std::vector<double>>(pack(std::vector<double>{0.5, 2})),
            (std::vector<double>{0.5, 2}));
  EXPECT_EQ(unpack<std::optional<int>>(pack(std::optional<int>(3))), 3);
  EXPECT_EQ(unpack<std::optional<int>>(Datum()), std::nullopt);
}

TEST(pack, tells_an_absent_optional_from_one_that_holds_an_absent_one) {
  using Twice = std::optional<std::optional<int>>;
  EXPECT_EQ(unpack<Twice>(pack(Twice())), Twice());
  EXPECT_EQ(unpack<Twice>(pack(Twice(std::optional<int>()))), Twice(std::optional<int>()));
}

TEST(pack, makes_a_structure_the_list_of_its_members) {
  const Pair pair{5, "five"};
  EXPECT_EQ(pack(pair),
            Datum(Datum::List{Datum(std::int64_t{5}), pack(std::optional<std::string>("five"))}));
  EXPECT_EQ(unpack<Pair>(pack(pair)), pair);
  EXPECT_EQ(unpack<std::vector<Pair>>(pack(std::vector<Pair>{pair, {}})),
            (std::vector<Pair>{pair, {}}));
}

TEST(unpack, refuses_a_datum_of_another_form) {
  EXPECT_THROW(unpack<bool>(Datum(std::int64_t{1})), MalformedDatum);
  EXPECT_THROW(unpack<int>(Datum(1.0)), MalformedDatum);
  EXPECT_THROW(unpack<double>(Datum(std::int64_t{1})), MalformedDatum);
  EXPECT_THROW(unpack<std::string>(Datum()), MalformedDatum);
  EXPECT_THROW(unpack<std::vector<int>>(Datum()), MalformedDatum);
  EXPECT_THROW(unpack<std::vector<int>>(Datum(Datum::List{Datum(true)})), MalformedDatum);
  EXPECT_THROW(unpack<std::optional<int>>(Datum(Datum::List{})), MalformedDatum);
  EXPECT_THROW(unpack<std::optional<int>>(Datum(std::int64_t{1})), MalformedDatum);
  EXPECT_THROW(unpack<Pair>(Datum(Datum::List{Datum(std::int64_t{5})})), MalformedDatum);
  EXPECT_THROW(unpack<Pair>(Datum(Datum::List{Datum(std::int64_t{5}), Datum(), Datum()})),
               MalformedDatum);
}

}  // namespace
}  // namespace driver
