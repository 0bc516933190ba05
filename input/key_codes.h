#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/quartz.h"

namespace driver {

/// A key by its name in lower case, with its virtual key code on the ANSI US layout.
struct KeyName {
  std::string_view name;
  std::uint16_t code = 0;
};

/// All keys that can be pressed, but for the modifiers. "enter" is the return key, which is what is
/// meant by it, not the keypad's.
inline constexpr std::array<KeyName, 64> keyCodes = {{
    {"a", 0},          {"s", 1},       {"d", 2},        {"f", 3},
    {"h", 4},          {"g", 5},       {"z", 6},        {"x", 7},
    {"c", 8},          {"v", 9},       {"b", 11},       {"q", 12},
    {"w", 13},         {"e", 14},      {"r", 15},       {"y", 16},
    {"t", 17},         {"1", 18},      {"2", 19},       {"3", 20},
    {"4", 21},         {"6", 22},      {"5", 23},       {"=", 24},
    {"9", 25},         {"7", 26},      {"-", 27},       {"8", 28},
    {"0", 29},         {"]", 30},      {"o", 31},       {"u", 32},
    {"[", 33},         {"i", 34},      {"p", 35},       {"l", 37},
    {"j", 38},         {"'", 39},      {"k", 40},       {";", 41},
    {"\\", 42},        {",", 43},      {"/", 44},       {"n", 45},
    {"m", 46},         {".", 47},      {"`", 50},       {"return", 36},
    {"enter", 36},     {"tab", 48},    {"space", 49},   {"delete", 51},
    {"backspace", 51}, {"escape", 53}, {"esc", 53},     {"forwarddelete", 117},
    {"home", 115},     {"end", 119},   {"pageup", 116}, {"pagedown", 121},
    {"left", 123},     {"right", 124}, {"down", 125},   {"up", 126},
}};

/// A modifier key: its flag in events, its own key code, and the words for it.
struct ModifierKey {
  quartz::Modifier flag;
  std::uint16_t code = 0;
  std::array<std::string_view, 4> words;  // those that are not empty
};

/// The modifier keys, in the order in which a combination presses them.
inline constexpr std::array<ModifierKey, 4> modifierKeys = {{
    {quartz::Modifier::command, 55, {"cmd", "command", "meta", "super"}},
    {quartz::Modifier::shift, 56, {"shift"}},
    {quartz::Modifier::option, 58, {"alt", "option", "opt"}},
    {quartz::Modifier::control, 59, {"ctrl", "control"}},
}};

/// The code of the key with exactly this name.
std::optional<std::uint16_t> keyCodeNamed(std::string_view name);

/// The modifier that exactly this word names.
std::optional<quartz::Modifier> modifierNamed(std::string_view word);

/// The one-character name of the key with this code; none for a key without such a name.
std::optional<std::string_view> characterOfKey(std::uint16_t code);

/// Whether the flags of an event have this modifier.
constexpr bool hasModifier(std::uint64_t flags, quartz::Modifier modifier) {
  return (flags & static_cast<std::uint64_t>(modifier)) != 0;
}

}  // namespace driver
