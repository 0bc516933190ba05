#include "accessibility/scope.h"

#include <gtest/gtest.h>

#include "tests/support/inside.h"

namespace driver {
namespace {

using namespace testing_support;

/// Whether a window of this title is in the scope that CU_WINDOW makes.
bool admits(const std::string& scope, const std::optional<std::string>& title) {
  TestMac mac("app Notes pid 41\n");
  return valueInside(mac, [&] { return inScope(title); }, {{"CU_WINDOW", scope}});
}

TEST(inScope, holds_for_every_window_without_a_scope) {
  EXPECT_TRUE(admits("", "Inbox"));
  EXPECT_TRUE(admits("", ""));
  EXPECT_TRUE(admits("", std::nullopt));
}

TEST(inScope, compares_whole_titles_whatever_their_case) {
  EXPECT_TRUE(admits("Notes", "Notes"));
  EXPECT_TRUE(admits("notes", "NOTES"));
  EXPECT_TRUE(admits("\u00C9t\u00E9", "\u00E9T\u00C9"));
  EXPECT_FALSE(admits("Notes", "My Notes"));
  EXPECT_FALSE(admits("Notes", "Note"));
  EXPECT_FALSE(admits("Notes", "Notess"));
}

TEST(inScope, is_false_for_an_untitled_window) {
  EXPECT_FALSE(admits("notes", ""));
  EXPECT_FALSE(admits("notes", std::nullopt));
  EXPECT_FALSE(admits(" ", ""));
  EXPECT_FALSE(admits(" ", std::nullopt));
}

TEST(inScope, takes_each_piece_between_em_dashes_for_a_title) {
  EXPECT_TRUE(admits("notes", "draft.md \u2014 Notes"));
  EXPECT_TRUE(admits("Inbox", "inbox \u2014 Mail"));
  EXPECT_TRUE(admits("b", "a \u2014 b \u2014 c"));
  EXPECT_TRUE(admits("c", "a \u2014 b \u2014 c"));
  EXPECT_FALSE(admits("a \u2014 b", "a \u2014 b"));
}

TEST(inScope, takes_no_other_dash_for_a_separator) {
  EXPECT_FALSE(admits("notes", "Notes - draft"));
  EXPECT_FALSE(admits("inbox", "Inbox - Mail"));
  EXPECT_FALSE(admits("notes", "Notes \u2013 draft"));
  EXPECT_FALSE(admits("notes", "draft\u2014Notes"));
  EXPECT_FALSE(admits("notes", "draft\u2014 Notes"));
  EXPECT_FALSE(admits("notes", "draft\u00A0\u2014\u00A0Notes"));
}

TEST(inScope, takes_pieces_one_after_the_other) {
  EXPECT_TRUE(admits("b", "a \u2014  \u2014 b"));
  EXPECT_FALSE(admits("b", "a \u2014 \u2014 b"));  // the second dash has lost its first space
  EXPECT_TRUE(admits("\u2014 b", "a \u2014 \u2014 b"));
  EXPECT_TRUE(admits("\u2014 b", " \u2014 b"));  // trimmed before it is split
}

TEST(inScope, trims_blanks_of_titles_and_pieces_and_no_line_breaks) {
  EXPECT_TRUE(admits("notes", "  Notes\t"));
  EXPECT_TRUE(admits("notes", "a \u2014   Notes  \u2014 b"));
  EXPECT_TRUE(admits("notes", "\u00A0Notes\u3000"));
  EXPECT_FALSE(admits("notes", "Notes\n"));
  EXPECT_FALSE(admits("notes", "a \u2014 \nNotes"));
}

TEST(inScope, never_holds_for_a_scope_with_outer_blanks) {
  for (const char* title : {"inbox", " inbox", "Inbox ", " inbox \u2014 mail"}) {
    EXPECT_FALSE(admits(" inbox", title)) << title;
    EXPECT_FALSE(admits("inbox ", title)) << title;
    EXPECT_FALSE(admits("\tinbox", title)) << title;
  }
}

TEST(inScope, keeps_line_breaks_of_the_scope) { EXPECT_TRUE(admits("a\nb", "A\nB")); }

TEST(inScope, drops_the_mark_of_an_extension_development_host) {
  EXPECT_TRUE(admits("proj", "[extension development host] proj \u2014 editor"));
  EXPECT_TRUE(admits("editor", "[extension development host] proj \u2014 editor"));
  EXPECT_TRUE(admits("notes", "[Extension Development Host] x \u2014 notes"));
  EXPECT_TRUE(admits("proj", "  [Extension Development Host]   proj"));
}

TEST(inScope, drops_that_mark_only_once_and_only_in_front) {
  EXPECT_FALSE(admits("proj", "[extension development host]proj"));
  EXPECT_FALSE(admits("proj", "[extension development host] [extension development host] proj"));
  EXPECT_FALSE(admits("proj", "x \u2014 [extension development host] proj"));
  EXPECT_TRUE(admits("[extension development host]", "[Extension Development Host] "));
}

TEST(inScope, takes_a_composed_and_a_decomposed_letter_for_the_same) {
  EXPECT_TRUE(admits("caf\u00E9", "Cafe\u0301 \u2014 Mail"));
  EXPECT_TRUE(admits("cafe\u0301", "CAF\u00C9"));
  EXPECT_FALSE(admits("cafe", "Caf\u00E9"));
}

}  // namespace
}  // namespace driver
