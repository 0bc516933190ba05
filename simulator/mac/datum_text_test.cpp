#include "simulator/mac/datum_text.h"

#include <gtest/gtest.h>

namespace simulator {

namespace {

using driver::Datum;
using driver::pack;

TEST(datumText, shows_texts_in_quotes_and_other_bytes_in_hexadecimal_digits) {
  EXPECT_EQ(datumText(pack("Grüße\tan\nalle")), "\"Grüße.an.alle\"");
  EXPECT_EQ(datumText(pack(std::string("\x0D\x00\xFF", 3))), "<0d00ff>");
  EXPECT_EQ(datumText(pack("\x89PNG")), "<89504e47>");
  EXPECT_EQ(datumText(pack("")), "\"\"");
  EXPECT_EQ(datumText(Datum(Datum::List{pack(true), pack(7), Datum(), pack(1.5)})),
            "[true 7 - 1.5]");
}

TEST(datumText, tells_records_apart_that_differ_in_one_byte) {
  std::string give(248, '\0');
  std::string take = give;
  give[0x8A] = 1;
  take[0x8A] = 2;
  EXPECT_NE(datumText(pack(give)), datumText(pack(take)));
  EXPECT_EQ(datumText(pack(give)).size(), 2 * 248 + 2);
}

TEST(datumText, cuts_a_text_between_two_characters) {
  EXPECT_EQ(datumText(pack(std::string(120, 'a'))), "\"" + std::string(120, 'a') + "\"");
  EXPECT_EQ(datumText(pack(std::string(119, 'a') + "é")), "\"" + std::string(119, 'a') + "…\"");
  EXPECT_EQ(datumText(pack(std::string(118, 'a') + "éb")), "\"" + std::string(118, 'a') + "é…\"");
}

TEST(hexOf, ends_after_256_bytes) {
  EXPECT_EQ(hexOf(std::string(256, 'a')).size(), 512U);
  EXPECT_EQ(hexOf(std::string(257, 'a')), hexOf(std::string(256, 'a')) + "…");
}

TEST(printable, is_one_line_of_text) {
  EXPECT_EQ(printable("one\ntwo\tthree\r \x1B[0m é \xFF"),
            "one\\ntwo\\tthree\\r \\x1b[0m é \uFFFD");
}

TEST(shellWord, is_quoted_where_a_shell_needs_it) {
  EXPECT_EQ(shellWord("340,574"), "340,574");
  EXPECT_EQ(shellWord(""), "''");
  EXPECT_EQ(shellWord("don't stop"), "'don'\\''t stop'");
}

}  // namespace

}  // namespace simulator
