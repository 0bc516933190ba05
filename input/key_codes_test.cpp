#include "input/key_codes.h"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "simulator/world/keyboard_layouts.h"

namespace driver {
namespace {

/// The code of the key with this name on the simulated Mac's keyboard; none when it has no such
/// key.
std::optional<std::int64_t> codeOnKeyboard(const std::string& name) {
  if (name == "enter") return simulator::key_codes::returnKey;  // not the keypad's
  if (name == "esc") return simulator::key_codes::escape;
  if (const auto code = simulator::codeNamed(name)) return code;
  const auto stroke = simulator::strokeFor(simulator::KeyboardLayout::us, name);
  return stroke && !stroke->shift ? std::optional(stroke->code) : std::nullopt;
}

TEST(keyCodes, has_each_key_once_with_its_code) {
  std::set<std::string> names;
  for (const KeyName& key : keyCodes) {
    const std::string name(key.name);
    names.insert(name);
    EXPECT_EQ(codeOnKeyboard(name), key.code) << name;
  }
  EXPECT_EQ(names.size(), 64U);
}

TEST(keyCodes, finds_a_key_by_exactly_its_name) {
  for (const KeyName& key : keyCodes) EXPECT_EQ(keyCodeNamed(key.name), key.code) << key.name;
  for (const char* name : {"", "A", "+", "f1", "f13", "cmd", "shift", "return ", "keypadenter",
                           "retur", "\u212A", "\u1FEF", "\u037E", "\u00A7"}) {
    EXPECT_EQ(keyCodeNamed(name), std::nullopt) << name;
  }
}

TEST(keyCodes, names_a_code_by_one_character_where_it_can) {
  for (int code = 0; code <= 0xFFFF; ++code) {
    std::string expected(
        simulator::characterOf(simulator::KeyboardLayout::us, code, /*shift=*/false));
    if (expected == " ") expected.clear();  // it has a name of its own
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
