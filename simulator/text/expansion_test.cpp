#include "simulator/text/expansion.h"

#include <gtest/gtest.h>

#include "simulator/text/parse.h"
#include "tests/support/world_errors.h"

namespace simulator {

namespace {

using testing_support::errorOf;

/// The lines that come of a text, each with its indentation, as they would be written.
std::string expanded(const std::string& text) {
  std::string result;
  const Complain complain = [&](const Complaint& complaint) {
    result += "! " + std::to_string(complaint.spot.line) + ": " + messageOf(complaint) + "\n";
  };
  const TakeLine take = [&](const Line& line) {
    result += std::string(line.indentation, ' ');
    for (const Token& token : line.tokens) {
      const bool isText = token.kind == Token::Kind::text;
      result += (isText ? '"' + token.text + '"' : token.text) + " ";
    }
    result.back() = '\n';
  };
  expand(gatherLines(text, {}, complain), take, complain);
  return result;
}

TEST(expansion, leaves_lines_without_its_words_as_they_are) {
  EXPECT_EQ(expanded("app {A} pid 1\n  AXButton \"{n} {{\" press: set L \"{n}\"\n"),
            "app {A} pid 1\n  AXButton \"{n} {{\" press: set L \"{n}\"\n");
}

TEST(expansion, puts_a_body_in_the_place_of_its_use) {
  EXPECT_EQ(expanded("define Pair(first, second)\n"
                     "      AXGroup\n"
                     "          AXButton {first} press: set L \"{first} and {second}\"\n"
                     "      AXButton \"x\" at {second},2\n"
                     "app A pid 1\n"
                     "  use Pair(\"One, (two)\", 3)\n"
                     "  AXButton \"last\"\n"),
            "app A pid 1\n"
            "  AXGroup\n"
            "      AXButton \"One, (two)\" press: set L \"One, (two) and 3\"\n"
            "  AXButton \"x\" at 3,2\n"
            "  AXButton \"last\"\n");
}

TEST(expansion, takes_a_definition_that_stands_below_and_one_without_parameters) {
  EXPECT_EQ(expanded("use Line\nuse Line()\ndefine Line\n  process {n}\n"),
            "process {n}\nprocess {n}\n");
}

TEST(expansion, repeats_a_body_and_counts) {
  EXPECT_EQ(expanded("repeat 2 as row\n"
                     "  app \"A{row}\" pid {row}\n"
                     "    repeat 2 as n\n"
                     "      AXButton \"{row}.{n}\"\n"
                     "repeat 0\n"
                     "  process 1\n"
                     "repeat 2\n"
                     "  file \"{n}\"\n"),
            "app \"A1\" pid 1\n"
            "  AXButton \"1.1\"\n"
            "  AXButton \"1.2\"\n"
            "app \"A2\" pid 2\n"
            "  AXButton \"2.1\"\n"
            "  AXButton \"2.2\"\n"
            "file \"{n}\"\n"
            "file \"{n}\"\n");
}

TEST(expansion, gives_a_body_the_parameters_of_its_own_alone) {
  EXPECT_EQ(expanded("define Inner(n)\n"
                     "  file \"{n}\"\n"
                     "define Outer(n, times)\n"
                     "  repeat {times} as i\n"
                     "    use Inner(\"{n}-{i}\")\n"
                     "use Outer(\"a\", 2)\n"),
            "file \"a-1\"\nfile \"a-2\"\n");
}

TEST(expansion, writes_a_brace_twice_where_it_would_begin_a_name) {
  EXPECT_EQ(expanded("repeat 1 as n\n  file \"{{n} { {} {1} {n}\"\n"), "file \"{n} { {} {1} 1\"\n");
}

TEST(expansion, complains_of_each_line_and_goes_on) {
  EXPECT_EQ(expanded("define Item(name)\n"
                     "  file \"{nmae}\"\n"
                     "  file \"{name}\"\n"
                     "use Item(1)\n"
                     "use Itme\n"
                     "file \"end\"\n"),
            "! 2: no parameter is called 'nmae'; did you mean 'name'? (used in line 4)\n"
            "file \"1\"\n"
            "! 5: 'Itme' is defined nowhere; did you mean 'Item'?\n"
            "file \"end\"\n");
}

struct BadText {
  const char* text;
  const char* error;
};

TEST(expansion, refuses_what_makes_no_sense) {
  const BadText cases[] = {
      {"define", "line 1: 'define' needs a name, as in Message(\"Ada\", 3)"},
      {"define A", "line 1: 'define' needs lines in it"},
      {"define A(x, x)\n  lock", "line 1: parameter 'x' is given twice"},
      {"define A(\"x\")\n  lock", "line 1: a parameter is a name, not 'x'"},
      {"define A(2)\n  lock", "line 1: a parameter is a name, not '2'"},
      {"define A(x\n  lock", "line 1: a ')' is missing"},
      {"define A(x,)\n  lock", "line 1: an argument is missing"},
      {"define A(,x)\n  lock", "line 1: an argument is missing"},
      {"define A(x y)\n  lock", "line 1: a comma is missing between arguments"},
      {"define A(x)y\n  lock", "line 1: a blank is missing after ')'"},
      {"define (x)\n  lock", "line 1: '(x)' does not begin with a name"},
      {"define A() b\n  lock", "line 1: unexpected 'b' at the end of the line"},
      {"define A\n  process 1\ndefine A\n  process 1", "line 3: 'A' is defined already"},
      {"define A\n  define B\n    process 1", "line 2: 'define' is in another one"},
      {"define A\n    process 1\n  process 2", "line 3: the indentation is that of no line above"},
      {"define A\n  process 1\nuse A\n  process 2", "line 4: nothing can be in 'use'"},
      {"define A(x)\n  process 1\nuse A", "line 3: 'A' takes 1 argument, not 0"},
      {"define A\n  process 1\nuse A(1, 2)", "line 3: 'A' takes no arguments, not 2"},
      {"define A\n  use B\ndefine B\n  use A\nuse A",
       "line 4: 'A' uses itself (used in line 2, used in line 5)"},
      {"repeat", "line 1: 'repeat' needs a number from 0 to 1000000"},
      {"repeat 2", "line 1: 'repeat' needs lines in it"},
      {"repeat 1000001\n  process 1",
       "line 1: 'repeat' needs a number from 0 to 1000000, not '1000001'"},
      {"repeat 2 as 3\n  process 1", "line 1: 'as' needs a name"},
      {"repeat 2 as n\n  repeat 2 as n\n    process 1", "line 2: 'n' is a parameter already"},
      {"repeat 2 as n\n    process {n}\n  process 2",
       "line 3: the indentation is that of no line above"},
      {"define A(n)\n  process {n}\nprocess 1\nuse A(1)",
       "line 2: process id 1 is taken (used in line 4)"},
      {"define Say(label)\n  AXButton press: set {label} \"x\"\napp A pid 1\n  AXTextField \"To\"\n"
       "  use Say(\"Too\")",
       "line 2: no element of A is labelled \"Too\"; did you mean 'To'? (used in line 5)"},
      {"define A(x)\n  process {x}\nuse A(value of B)",
       "line 3: 'use' knows no element whose value it could take"},
      {"define A(x)\n  process {x}\nuse A(value of)", "line 3: 'of' needs the label of an element"},
      {"include \"b.world\"", "line 1: a world that is no file can include none"},
      {"include", "line 1: 'include' needs a quoted path"},
  };
  for (const BadText& each : cases) EXPECT_EQ(errorOf(each.text), each.error) << each.text;
}

TEST(expansion, makes_a_million_lines_at_most) {
  EXPECT_EQ(errorOf("repeat 1001\n  repeat 1000\n    file \"a\"\n"),
            "line 3: more than 1,000,000 lines come of 'use' and 'repeat'");
  EXPECT_EQ(errorOf("repeat 1000000\n  repeat 1000000\n    repeat 0\n      file \"a\"\n"),
            "line 2: more than 1,000,000 lines come of 'use' and 'repeat'");
}

/// What a world says whose files are these.
std::string errorWith(const std::map<std::string, std::string>& files) {
  const WorldFiles known{"worlds/a.world",
                         [&](const std::string& path) -> std::optional<std::string> {
                           const auto found = files.find(path);
                           if (found == files.end()) return std::nullopt;
                           return found->second;
                         }};
  try {
    parseWorld(files.at("worlds/a.world"), known);
  } catch (const WorldError& error) {
    return fileOf(error.complaint().spot) + ": " + error.what();
  }
  return "no error";
}

TEST(including, reads_files_relative_to_the_one_that_names_them) {
  const std::string parts = "\xEF\xBB\xBF  include \"more/buttons.world\"\n";
  EXPECT_EQ(errorWith({{"worlds/a.world",
                        "include \"parts.world\"\napp A pid 1\n  include \"tree.world\"\n"},
                       {"worlds/parts.world", parts},
                       {"worlds/tree.world", "   AXGroup\n     use Button(\"B\")\n   AXGroup\n"},
                       {"worlds/more/buttons.world",
                        "define Button(label)\n  AXButton {label} press: set {label} \"x\"\n"}}),
            "no error");
}

TEST(including, defines_the_same_once) {
  EXPECT_EQ(errorWith({{"worlds/a.world", "include \"b.world\"\ninclude \"b.world\"\nuse P(1)\n"},
                       {"worlds/b.world", "define P(n)\n  process {n}\n"}}),
            "no error");
}

TEST(including, tells_which_file_and_which_lines_led_there) {
  EXPECT_EQ(
      errorWith({{"worlds/a.world", "app A pid 1\ninclude \"b.world\"\n"},
                 {"worlds/b.world", "\nproces 7\n"}}),
      "worlds/b.world: line 2: unknown word 'proces'; expected app, user, pointer, display, "
      "deny, session, missing, process, file, image, at, panel, seed, clock, keyboard, pasteboard, "
      "idle, languages, macos, system, directory, tool, link, define, use, repeat, include; "
      "did you "
      "mean 'process'? (included in line 2 of the world)");
  EXPECT_EQ(errorWith({{"worlds/a.world", "process 1\ninclude \"b.world\"\nuse P(1)\n"},
                       {"worlds/b.world", "define P(n)\n  process {n}\n"}}),
            "worlds/b.world: line 2: process id 1 is taken (used in line 3 of the world)");
}

TEST(including, refuses_circles_files_that_are_not_there_and_lines_below) {
  EXPECT_EQ(errorWith({{"worlds/a.world", "include \"b.world\"\n"},
                       {"worlds/b.world", "include \"../worlds/a.world\"\n"}}),
            "worlds/b.world: line 1: 'worlds/a.world' includes itself (included in line 1 of the "
            "world)");
  EXPECT_EQ(errorWith({{"worlds/a.world", "include \"b.world\"\n"}}),
            ": line 1: 'worlds/b.world' cannot be read");
  EXPECT_EQ(errorWith({{"worlds/a.world", "include \"b.world\"\n  process 1\n"},
                       {"worlds/b.world", "process 2\n"}}),
            ": line 2: nothing can be in 'include'");
  EXPECT_EQ(errorWith({{"worlds/a.world", "include \"b.world\"\n"},
                       {"worlds/b.world", "  process 2\nprocess 3\n"}}),
            "worlds/b.world: line 2: the indentation is that of no line above (included in line 1 "
            "of the world)");
}

TEST(including, can_be_done_to_the_text) {
  const std::map<std::string, std::string> files = {
      {"b/parts.world",
       "  # parts\n  app B pid 2\n\n    window 8 \"W\" at 0,0 size 9x9\n"
       "      include \"../c.world\""},
      {"c.world", "AXButton\n"}};
  const WorldFiles known{"a.world", [&](const std::string& path) -> std::optional<std::string> {
                           const auto found = files.find(path);
                           if (found == files.end()) return std::nullopt;
                           return found->second;
                         }};

  EXPECT_EQ(
      withIncluded("app A pid 1 # one\n\n  include \"none\"\n include \"b/parts.world\"\n", known),
      "app A pid 1 # one\n\n  include \"none\"\n  # parts\n app B pid 2\n\n"
      "   window 8 \"W\" at 0,0 size 9x9\n     AXButton\n");
  EXPECT_EQ(withIncluded("app A pid 1\n", {}), "app A pid 1\n");
}

}  // namespace

}  // namespace simulator
