#include "input/background_text.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "base/utf16.h"
#include "input/keys.h"
#include "input/post.h"
#include "platform/loop.h"
#include "platform/quartz.h"
#include "platform/text.h"

namespace driver {

namespace {

// Receivers cut off what is beyond.
constexpr std::size_t unitsMax = 20;

// A composer may lay itself out anew for another line; what is typed meanwhile would be lost.
constexpr std::uint32_t lineBreakMicroseconds = 50'000;

// Which key it is does not matter: the event says what it types.
constexpr std::uint16_t anyKey = 0;

std::optional<quartz::Event> createPiece(std::u16string_view piece, bool down) {
  std::optional<quartz::Event> event = quartz::createKeyboardEvent(anyKey, down);
  if (!event) return std::nullopt;
  quartz::setFlags(*event, 0);  // of what the user holds down just now
  quartz::setText(*event, piece);
  return event;
}

void postPiece(std::u16string_view piece, KeyboardInput& input) {
  std::optional<quartz::Event> down = createPiece(piece, true);
  std::optional<quartz::Event> up = createPiece(piece, false);
  // What goes down must come up.
  if (!down) up.reset();
  if (!up) down.reset();
  input.requireKeyboard();
  Press press(input.pid());
  if (press.down(down)) input.noteTyped(piece.size());
  press.up(up);
}

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

void backgroundText(const std::string& text, KeyboardInput& input) {
  bool isFirst = true;
  for (const std::string_view line : linesOf(text)) {
    // A plain return would send the message that is being typed, in many an application.
    if (!isFirst) {
      if (key("shift+return", input)) input.noteTyped(1);
      loop::sleepMicroseconds(lineBreakMicroseconds);
    }
    isFirst = false;
    for (const std::u16string& piece : typedPieces(line)) postPiece(piece, input);
  }
}

}  // namespace driver
