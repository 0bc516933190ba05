#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/world/user_state.h"

/// Keys: their codes, which are places on a keyboard, and what layouts make of them.
namespace simulator {

namespace key_codes {
inline constexpr std::int64_t returnKey = 36;
inline constexpr std::int64_t tab = 48;
inline constexpr std::int64_t space = 49;
inline constexpr std::int64_t deleteKey = 51;
inline constexpr std::int64_t escape = 53;
inline constexpr std::int64_t keypadEnter = 76;
inline constexpr std::int64_t home = 115;
inline constexpr std::int64_t pageUp = 116;
inline constexpr std::int64_t forwardDelete = 117;
inline constexpr std::int64_t end = 119;
inline constexpr std::int64_t pageDown = 121;
inline constexpr std::int64_t left = 123;
inline constexpr std::int64_t right = 124;
inline constexpr std::int64_t down = 125;
inline constexpr std::int64_t up = 126;
}  // namespace key_codes

/// A modifier key.
struct ModifierKey {
  std::string_view name;
  std::int64_t code = 0;
  std::uint64_t flag = 0;
};

/// In the order in which they are pressed.
inline constexpr ModifierKey modifierKeys[] = {
    {"cmd", 55, 0x100000},
    {"shift", 56, 0x20000},
    {"option", 58, 0x80000},
    {"control", 59, 0x40000},
};

inline constexpr std::uint64_t commandFlag = modifierKeys[0].flag;
inline constexpr std::uint64_t shiftFlag = modifierKeys[1].flag;
inline constexpr std::uint64_t optionFlag = modifierKeys[2].flag;
inline constexpr std::uint64_t controlFlag = modifierKeys[3].flag;

/// The modifier key with this code, the right one of a pair too; null for any other key.
const ModifierKey* modifierWithCode(std::int64_t code);

/// The names of the modifiers that are set, with "+" between them; empty for none.
std::string modifierNames(std::uint64_t flags);

/// The code of a key that has a name rather than a character: "return", "left" …
std::optional<std::int64_t> codeNamed(std::string_view name);

/// What the user presses for a character.
struct KeyStroke {
  std::int64_t code = 0;
  bool shift = false;
};

/// None when the layout has no key for the character.
std::optional<KeyStroke> strokeFor(KeyboardLayout layout, std::string_view character);

/// The accent of a key that types none before a letter follows; empty for other keys.
std::string_view deadKeyOf(KeyboardLayout layout, std::int64_t code, bool shift);

/// The key for such an accent; none when the layout has it on no such key.
std::optional<KeyStroke> deadStrokeFor(KeyboardLayout layout, std::string_view accent);

/// The character of a key, shifted or not; empty when the key types none.
std::string_view characterOf(KeyboardLayout layout, std::int64_t code, bool shift);

}  // namespace simulator
