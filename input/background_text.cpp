#include "input/background_text.h"

#include <cstdint>
#include <optional>
#include <string_view>

#include "input/keys.h"
#include "input/post.h"
#include "input/text_pieces.h"
#include "platform/loop.h"
#include "platform/quartz.h"

namespace driver {

namespace {

constexpr std::uint32_t lineBreakMicroseconds = 50'000;

// Which key it is does not matter: the event says what it types.
constexpr std::uint16_t anyKey = 0;

void postPiece(std::u16string_view piece, bool down, platform::Pid pid) {
  const std::optional<quartz::Event> event = quartz::createKeyboardEvent(anyKey, down);
  if (event) {
    quartz::setFlags(*event, 0);
    quartz::setText(*event, piece);
  }
  postTarget(event, pid);
}

}  // namespace

void backgroundText(const std::string& text, platform::Pid pid) {
  bool isFirst = true;
  for (const std::string_view line : linesOf(text)) {
    if (!isFirst) {
      key("shift+return", pid);
      loop::sleepMicroseconds(lineBreakMicroseconds);
    }
    isFirst = false;
    for (const std::u16string& piece : typedPieces(line)) {
      postPiece(piece, true, pid);
      postPiece(piece, false, pid);
    }
  }
}

}  // namespace driver
