#include "input/text_pieces.h"

#include <cstddef>

#include "base/utf16.h"
#include "platform/text.h"

namespace driver {

namespace {

// Receivers cut off what is beyond.
constexpr std::size_t unitsMax = 20;

}  // namespace

std::vector<std::string_view> linesOf(std::string_view text) {
  std::vector<std::string_view> lines;
  while (true) {
    const std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    if (end == std::string_view::npos) {
      lines.push_back(line);
      return lines;
    }
    if (line.ends_with('\r')) line.remove_suffix(1);
    lines.push_back(line);
    text.remove_prefix(end + 1);
  }
}

std::vector<std::u16string> typedPieces(std::string_view line) {
  std::vector<std::u16string> pieces;
  for (const std::string& character : text::characters(line)) {
    const std::u16string units = utf16(character);
    if (pieces.empty() || pieces.back().size() + units.size() > unitsMax) pieces.emplace_back();
    pieces.back() += units;
  }
  return pieces;
}

}  // namespace driver
