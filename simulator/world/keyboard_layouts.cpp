#include "simulator/world/keyboard_layouts.h"

#include <iterator>
#include <utility>

namespace simulator {

namespace {

struct Key {
  std::int64_t code;
  std::string_view plain;
  std::string_view shifted;
};

constexpr Key usKeys[] = {
    {0, "a", "A"},   {1, "s", "S"},  {2, "d", "D"},   {3, "f", "F"},  {4, "h", "H"},
    {5, "g", "G"},   {6, "z", "Z"},  {7, "x", "X"},   {8, "c", "C"},  {9, "v", "V"},
    {11, "b", "B"},  {12, "q", "Q"}, {13, "w", "W"},  {14, "e", "E"}, {15, "r", "R"},
    {16, "y", "Y"},  {17, "t", "T"}, {18, "1", "!"},  {19, "2", "@"}, {20, "3", "#"},
    {21, "4", "$"},  {22, "6", "^"}, {23, "5", "%"},  {24, "=", "+"}, {25, "9", "("},
    {26, "7", "&"},  {27, "-", "_"}, {28, "8", "*"},  {29, "0", ")"}, {30, "]", "}"},
    {31, "o", "O"},  {32, "u", "U"}, {33, "[", "{"},  {34, "i", "I"}, {35, "p", "P"},
    {37, "l", "L"},  {38, "j", "J"}, {39, "'", "\""}, {40, "k", "K"}, {41, ";", ":"},
    {42, "\\", "|"}, {43, ",", "<"}, {44, "/", "?"},  {45, "n", "N"}, {46, "m", "M"},
    {47, ".", ">"},  {49, " ", " "}, {50, "`", "~"},
};

// What differs from the above. A dead key types nothing by itself.
constexpr Key germanKeys[] = {
    {6, "y", "Y"},  {10, "^", "°"}, {16, "z", "Z"}, {19, "2", "\""}, {20, "3", "§"}, {22, "6", "&"},
    {24, "", ""},   {25, "9", ")"}, {26, "7", "/"}, {27, "ß", "?"},  {28, "8", "("}, {29, "0", "="},
    {30, "+", "*"}, {33, "ü", "Ü"}, {39, "ä", "Ä"}, {41, "ö", "Ö"},  {42, "#", "'"}, {43, ",", ";"},
    {44, "-", "_"}, {47, ".", ":"}, {50, "<", ">"},
};

constexpr Key frenchKeys[] = {
    {0, "q", "Q"},  {6, "w", "W"},   {10, "@", "#"}, {12, "a", "A"}, {13, "z", "Z"}, {18, "&", "1"},
    {19, "é", "2"}, {20, "\"", "3"}, {21, "'", "4"}, {22, "§", "6"}, {23, "(", "5"}, {24, "-", "_"},
    {25, "ç", "9"}, {26, "è", "7"},  {27, ")", "°"}, {28, "!", "8"}, {29, "à", "0"}, {30, "$", "*"},
    {33, "", ""},   {39, "ù", "%"},  {41, "m", "M"}, {42, "`", "£"}, {43, ";", "."}, {44, "=", "+"},
    {46, ",", "?"}, {47, ":", "/"},  {50, "<", ">"},
};

constexpr Key japaneseKeys[] = {
    {19, "2", "\""}, {22, "6", "&"}, {24, "^", "~"}, {25, "9", ")"}, {26, "7", "'"}, {27, "-", "="},
    {28, "8", "("},  {29, "0", ""},  {30, "[", "{"}, {33, "@", "`"}, {39, ":", "*"}, {41, ";", "+"},
    {42, "]", "}"},  {50, "", ""},   {93, "¥", "|"}, {94, "_", "_"},
};

struct DeadKey {
  KeyboardLayout layout;
  KeyStroke stroke;
  std::string_view accent;
};

constexpr DeadKey deadKeys[] = {
    {KeyboardLayout::german, {10, false}, "^"}, {KeyboardLayout::german, {24, false}, "´"},
    {KeyboardLayout::german, {24, true}, "`"},  {KeyboardLayout::french, {33, false}, "^"},
    {KeyboardLayout::french, {33, true}, "¨"},
};

struct Keys {
  const Key* first;
  const Key* last;
};

Keys differing(KeyboardLayout layout) {
  switch (layout) {
    case KeyboardLayout::us:
      break;
    case KeyboardLayout::german:
      return {std::begin(germanKeys), std::end(germanKeys)};
    case KeyboardLayout::french:
      return {std::begin(frenchKeys), std::end(frenchKeys)};
    case KeyboardLayout::japanese:
      return {std::begin(japaneseKeys), std::end(japaneseKeys)};
  }
  return {nullptr, nullptr};
}

const Key* keyIn(Keys keys, std::int64_t code) {
  for (const Key* key = keys.first; key != keys.last; ++key) {
    if (key->code == code) return key;
  }
  return nullptr;
}

std::optional<KeyStroke> strokeIn(KeyboardLayout layout, Keys keys, std::string_view character) {
  for (const Key* key = keys.first; key != keys.last; ++key) {
    for (const bool shift : {false, true}) {
      // A key that the layout has made another is not asked for what it was.
      const bool types = (shift ? key->shifted : key->plain) == character;
      if (types && characterOf(layout, key->code, shift) == character) {
        return KeyStroke{key->code, shift};
      }
    }
  }
  return std::nullopt;
}

constexpr std::pair<std::string_view, std::int64_t> namedKeys[] = {
    {"return", key_codes::returnKey},
    {"enter", key_codes::keypadEnter},
    {"tab", key_codes::tab},
    {"space", key_codes::space},
    {"delete", key_codes::deleteKey},
    {"backspace", key_codes::deleteKey},
    {"forwarddelete", key_codes::forwardDelete},
    {"escape", key_codes::escape},
    {"home", key_codes::home},
    {"end", key_codes::end},
    {"pageup", key_codes::pageUp},
    {"pagedown", key_codes::pageDown},
    {"left", key_codes::left},
    {"right", key_codes::right},
    {"up", key_codes::up},
    {"down", key_codes::down},
};

}  // namespace

const ModifierKey* modifierWithCode(std::int64_t code) {
  constexpr std::pair<std::int64_t, std::int64_t> rightKeys[] = {
      {54, 55}, {60, 56}, {61, 58}, {62, 59}};
  for (const auto& [right, left] : rightKeys) {
    if (code == right) code = left;
  }
  for (const ModifierKey& key : modifierKeys) {
    if (key.code == code) return &key;
  }
  return nullptr;
}

std::string modifierNames(std::uint64_t flags) {
  std::string names;
  for (const ModifierKey& key : modifierKeys) {
    if ((flags & key.flag) == 0) continue;
    if (!names.empty()) names += '+';
    names += key.name;
  }
  return names;
}

std::optional<std::int64_t> codeNamed(std::string_view name) {
  for (const auto& [known, code] : namedKeys) {
    if (known == name) return code;
  }
  return std::nullopt;
}

std::optional<KeyStroke> strokeFor(KeyboardLayout layout, std::string_view character) {
  if (character.empty()) return std::nullopt;
  if (const auto own = strokeIn(layout, differing(layout), character)) return own;
  return strokeIn(layout, {std::begin(usKeys), std::end(usKeys)}, character);
}

std::string_view deadKeyOf(KeyboardLayout layout, std::int64_t code, bool shift) {
  for (const DeadKey& key : deadKeys) {
    const bool isKey = key.stroke.code == code && key.stroke.shift == shift;
    if (isKey && key.layout == layout) return key.accent;
  }
  return {};
}

std::optional<KeyStroke> deadStrokeFor(KeyboardLayout layout, std::string_view accent) {
  for (const DeadKey& key : deadKeys) {
    if (key.layout == layout && key.accent == accent) return key.stroke;
  }
  return std::nullopt;
}

std::string_view characterOf(KeyboardLayout layout, std::int64_t code, bool shift) {
  const Key* key = keyIn(differing(layout), code);
  if (key == nullptr) key = keyIn({std::begin(usKeys), std::end(usKeys)}, code);
  if (key == nullptr) return {};
  return shift ? key->shifted : key->plain;
}

}  // namespace simulator
