#include "input/key_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>

namespace driver {
namespace {

/// Written out a second time, by rows of the keyboard.
const std::map<std::string, int> expectedCodes = {
    {"a", 0},       {"s", 1},          {"d", 2},      {"f", 3},
    {"h", 4},       {"g", 5},          {"z", 6},      {"x", 7},
    {"c", 8},       {"v", 9},          {"b", 11},     {"q", 12},
    {"w", 13},      {"e", 14},         {"r", 15},     {"y", 16},
    {"t", 17},      {"1", 18},         {"2", 19},     {"3", 20},
    {"4", 21},      {"6", 22},         {"5", 23},     {"=", 24},
    {"9", 25},      {"7", 26},         {"-", 27},     {"8", 28},
    {"0", 29},      {"]", 30},         {"o", 31},     {"u", 32},
    {"[", 33},      {"i", 34},         {"p", 35},     {"l", 37},
    {"j", 38},      {"'", 39},         {"k", 40},     {";", 41},
    {"\\", 42},     {",", 43},         {"/", 44},     {"n", 45},
    {"m", 46},      {".", 47},         {"`", 50},     {"return", 36},
    {"enter", 36},  {"tab", 48},       {"space", 49}, {"delete", 51},
    {"escape", 53}, {"backspace", 51}, {"esc", 53},   {"forwarddelete", 117},
    {"home", 115},  {"end", 119},      {"left", 123}, {"pageup", 116},
    {"right", 124}, {"down", 125},     {"up", 126},   {"pagedown", 121},
};

TEST(keyCodes, has_each_key_once_with_its_code) {
  std::map<std::string, int> codes;
  for (const KeyName& key : keyCodes) codes.emplace(key.name, key.code);
  EXPECT_EQ(codes, expectedCodes);
  EXPECT_EQ(codes.size(), 64U);
}

TEST(keyCodes, finds_a_key_by_exactly_its_name) {
  for (const auto& [name, code] : expectedCodes) EXPECT_EQ(keyCodeNamed(name), code) << name;
  for (const char* name : {"", "A", "+", "f1", "f13", "cmd", "shift", "return ", "keypadenter",
                           "retur", "\u212A", "\u1FEF", "\u037E", "\u00A7"}) {
    EXPECT_EQ(keyCodeNamed(name), std::nullopt) << name;
  }
}

TEST(keyCodes, names_a_code_by_one_character_where_it_can) {
  for (int code = 0; code <= 0xFFFF; ++code) {
    std::string expected;
    for (const auto& [name, of] : expectedCodes) {
      if (of == code && name.size() == 1) expected = name;
    }
    ASSERT_EQ(characterOfKey(static_cast<std::uint16_t>(code)).value_or(""), expected) << code;
  }
}

TEST(modifierKeys, have_their_flags_and_codes_in_the_order_of_pressing) {
  std::vector<std::pair<std::uint64_t, int>> keys;
  for (const ModifierKey& key : modifierKeys) {
    keys.emplace_back(static_cast<std::uint64_t>(key.flag), key.code);
  }
  EXPECT_EQ(keys, (std::vector<std::pair<std::uint64_t, int>>{
                      {0x100000, 55}, {0x20000, 56}, {0x80000, 58}, {0x40000, 59}}));
}

TEST(modifierKeys, are_found_by_each_of_their_words) {
  using quartz::Modifier;
  const std::map<std::string, Modifier> words = {
      {"cmd", Modifier::command},    {"command", Modifier::command}, {"meta", Modifier::command},
      {"super", Modifier::command},  {"shift", Modifier::shift},     {"alt", Modifier::option},
      {"option", Modifier::option},  {"opt", Modifier::option},      {"ctrl", Modifier::control},
      {"control", Modifier::control}};
  std::set<std::string> known;
  for (const ModifierKey& key : modifierKeys) {
    for (const std::string_view word : key.words) {
      if (!word.empty()) known.emplace(word);
    }
  }
  EXPECT_EQ(known.size(), words.size());
  for (const auto& [word, modifier] : words) EXPECT_EQ(modifierNamed(word), modifier) << word;
  for (const char* word : {"", "Cmd", "win", "fn", "shif", "a", "controll"}) {
    EXPECT_EQ(modifierNamed(word), std::nullopt) << word;
  }
}

TEST(hasModifier, looks_at_one_flag) {
  EXPECT_TRUE(hasModifier(0x120100, quartz::Modifier::shift));
  EXPECT_TRUE(hasModifier(0x120100, quartz::Modifier::command));
  EXPECT_FALSE(hasModifier(0x120100, quartz::Modifier::option));
  EXPECT_FALSE(hasModifier(0, quartz::Modifier::control));
}

}  // namespace
}  // namespace driver
