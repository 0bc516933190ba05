#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What platform/text.h says of texts, case by case: the same for both sides of the seam.
namespace text_cases {

using Texts = std::vector<std::string>;

struct Changed {
  std::string given;
  std::string expected;
};

struct Compared {
  std::string a;
  std::string b;
  bool expected = false;
};

struct Divided {
  std::string given;
  Texts expected;
};

struct Cut {
  std::string given;
  std::size_t count = 0;
  std::string expected;
};

inline const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
inline const std::string flag = "\U0001F1EB\U0001F1F7";
inline const std::string withZero = std::string("a\0b", 3);

inline const std::vector<Changed> lowercase = {
    {"", ""},
    {"Inbox 12", "inbox 12"},
    {"\u00C9COLE \u0410\u0411 \u03A9", "\u00E9cole \u0430\u0431 \u03C9"},
    {"SEND \u00C9\u0416 I", "send \u00E9\u0436 i"},
    {"STRASSE \u1E9E", "strasse \u00DF"},
    {"\u4F60\U0001F600", "\u4F60\U0001F600"},
    // Whatever the locale.
    {"TITLE", "title"},                // not the Turkish dotless i
    {"\u0130", "i\u0307"},             // a dotted capital keeps its dot
    {"\u039F\u03A3", "\u03BF\u03C2"},  // a final sigma
    // White space and zero bytes stay.
    {"  A\n\tB ", "  a\n\tb "},
    {std::string("A\0B", 3), withZero},
};

inline const std::vector<Compared> equal = {
    // The same letters, however composed.
    {"", "", true},
    {"caf\u00E9", "cafe\u0301", true},
    {"\u212B", "A\u030A", true},               // the Angstrom sign
    {"\uD55C", "\u1112\u1161\u11AB", true},    // a Korean syllable
    {"e\u0323\u0302", "e\u0302\u0323", true},  // marks in another order
    // Other letters, and another case.
    {"cafe", "caf\u00E9", false},
    {"caf\u00E9", "cafe", false},
    {"Notes", "notes", false},
    {"cafe", "Cafe", false},
    {"a", "a ", false},
    {"", " ", false},
    {"\uFB01", "fi", false},  // a ligature is only compatible
    {"\u00A0", " ", false},   // and so is a blank that does not break
};

inline const std::vector<Changed> canonical = {
    {"", ""},
    {"cafe\u0301", "caf\u00E9"},
    {"\u212B", "\u00C5"},  // the Angstrom sign
    {"\u1112\u1161\u11AB", "\uD55C"},
    {"e\u0302\u0323", "\u1EC7"},
    {"e\u0323\u0302", "\u1EC7"},
    {"\uFB01 \u2026", "\uFB01 \u2026"},  // these are only compatible
    {withZero, withZero},
};

inline const std::vector<Divided> characters = {
    {"", {}},
    {"hi !", {"h", "i", " ", "!"}},
    {"e\u0301\u0323x\u00E9", {"e\u0301\u0323", "x", "\u00E9"}},
    {"e\u0301x" + family + flag + flag, {"e\u0301", "x", family, flag, flag}},
    {"\U0001F1E9\U0001F1EA" + flag + "\U0001F1E9", {"\U0001F1E9\U0001F1EA", flag, "\U0001F1E9"}},
    {"\U0001F44D\U0001F3FD" + family + "!", {"\U0001F44D\U0001F3FD", family, "!"}},
    {"\u1112\u1161\u11AB\u1112", {"\u1112\u1161\u11AB", "\u1112"}},
    {"a\r\nb\n\r", {"a", "\r\n", "b", "\n", "\r"}},
    {"a\r\nb\n\r\r", {"a", "\r\n", "b", "\n", "\r", "\r"}},
    {withZero, {"a", std::string(1, '\0'), "b"}},
};

inline const std::vector<Cut> prefix = {
    {"hello", 3, "hel"},
    {"hello", 5, "hello"},
    {"hello", 50, "hello"},
    {"hello", 0, ""},
    {"", 3, ""},
    {"\u00E9\u00E9\u00E9", 2, "\u00E9\u00E9"},
    {"e\u0301e\u0301x", 1, "e\u0301"},
    {"e\u0301e\u0301e", 2, "e\u0301e\u0301"},
    {"\U0001F1E9\U0001F1EA" + flag, 1, "\U0001F1E9\U0001F1EA"},
    {"\U0001F44D\U0001F3FDx", 1, "\U0001F44D\U0001F3FD"},
    {family + "!", 1, family},
    {family + flag + "x", 2, family + flag},
    {family + flag + "x", 9, family + flag + "x"},
    // A line end of two characters is one.
    {"a\r\nb", 2, "a\r\n"},
    {"a\n\rb", 2, "a\n"},
    {"\r\n\r\n\n", 2, "\r\n\r\n"},
    {withZero, 2, std::string("a\0", 2)},
};

inline const std::vector<Changed> trimmedBlanks = {
    {"  a b\t ", "a b"},
    {"\u00A0\u2003\u3000x\u202F", "x"},
    {" \t\u00A0\u3000a \u2009b\u2003\u202F\u205F\u1680 ", "a \u2009b"},
    {"", ""},
    {" \t ", ""},
    {" \U0001F600 ", "\U0001F600"},
    {"\u200Ba", "\u200Ba"},  // invisible, and no blank
    // Line breaks stay.
    {"\n a \n", "\n a \n"},
    {" \na\n ", "\na\n"},
    {" \r\n\v\f\u2028\u2029\u0085 ", "\r\n\v\f\u2028\u2029\u0085"},
};

inline const std::vector<Divided> words = {
    {"  Send\n Now ", {"Send", "Now"}},
    {"one", {"one"}},
    {"a\tb\vc\fd\re\r\nf", {"a", "b", "c", "d", "e", "f"}},
    {"a\u00A0b\u2003c\u3000d\u2028e\u2029f\u0085g", {"a", "b", "c", "d", "e", "f", "g"}},
    {" a\tb\nc\r\nd\u2028e\u00A0f\u0085g\vh\fi\u2029",
     {"a", "b", "c", "d", "e", "f", "g", "h", "i"}},
    // Nothing but white space.
    {"", {}},
    {" \n ", {}},
    {" \n\t\u3000", {}},
    // Invisible characters are no white space.
    {"a\u200Db", {"a\u200Db"}},
    {"a\u2060b\uFEFFc", {"a\u2060b\uFEFFc"}},
    {"\U0001F600 \U0001F600", {"\U0001F600", "\U0001F600"}},
    {"\U0001F600 \u00E9", {"\U0001F600", "\u00E9"}},
};

}  // namespace text_cases
