#include "input/sky_focus.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "accessibility/element.h"
#include "accessibility/messages.h"
#include "input/sky.h"
#include "main/ending.h"
#include "platform/ax.h"
#include "platform/loop.h"

namespace driver::Sky {

namespace {

// The records are posted, not answered: what follows must find the window server and the
// application done with them. A window that becomes key also moves its application's keyboard,
// which takes longer.
constexpr std::uint32_t focusPauseMicroseconds = 40'000;
constexpr std::uint32_t keyPauseMicroseconds = 300'000;

constexpr std::uint8_t recordLength = 0xF8;

// Zeros follow the record: the window server's client reads a pointer right behind it (seen on
// macOS 14), and the process aborts when that is not null.
using Record = std::array<std::uint8_t, 256>;

namespace offset {
constexpr std::size_t length = 0x04;
constexpr std::size_t type = 0x08;
constexpr std::size_t windowLocation = 0x20;
constexpr std::size_t windowLocationEnd = 0x30;
constexpr std::size_t keyFlag = 0x3A;
constexpr std::size_t window = 0x3C;
constexpr std::size_t focusChange = 0x8A;
}  // namespace offset

// Byte by byte: the wire format has the least significant one first, whatever the machine.
Record recordFor(platform::WindowNumber window, std::uint8_t type) {
  Record record{};
  record[offset::length] = recordLength;
  record[offset::type] = type;
  for (std::size_t i = 0; i < sizeof window; ++i) {
    record[offset::window + i] = static_cast<std::uint8_t>(window >> (8 * i));
  }
  return record;
}

Record focusRecord(platform::WindowNumber window, bool give) {
  constexpr std::uint8_t applicationDefined = 0x0D;  // AppKit's own events have this type
  Record record = recordFor(window, applicationDefined);
  record[offset::focusChange] = give ? 0x01 : 0x02;
  return record;
}

Record keyRecord(platform::WindowNumber window, std::uint8_t type) {
  Record record = recordFor(window, type);
  record[offset::keyFlag] = 0x10;
  // Not-a-number for both coordinates: the click hits no view.
  std::fill(record.begin() + offset::windowLocation, record.begin() + offset::windowLocationEnd,
            std::uint8_t{0xFF});
  return record;
}

/// Where records for one process go.
struct Receiver {
  PostRecord postRecord;
  platform::SerialNumber process;

  bool accepts(Record record) {
    return postRecord(&process, record.data()) == platform::statusSuccess;
  }
};

std::optional<Receiver> receiverFor(platform::Pid pid) {
  const PostRecord post = postRecord();
  if (post == nullptr) return std::nullopt;
  const ProcessForPid find = processForPid();
  if (find == nullptr) return std::nullopt;
  Receiver receiver{post, {}};
  if (find(pid, &receiver.process) != platform::statusSuccess) return std::nullopt;
  return receiver;
}

/// The press and the release that make a window key, both or, once the process is ending, none.
bool clicksAsKey(Receiver& receiver, platform::WindowNumber window) {
  constexpr std::uint8_t mouseDown = 0x01;
  constexpr std::uint8_t mouseUp = 0x02;
  const Act act;
  return receiver.accepts(keyRecord(window, mouseDown)) &&
         receiver.accepts(keyRecord(window, mouseUp));
}

// A window that is the focused one but has no focused element is made key all the same: its keys
// would go nowhere.
bool isKey(platform::Pid pid, platform::WindowNumber window) {
  const KeyboardFocus focus = keyboardFocus(pid);
  return focus.hasElement && focus.window && messages::windowNumber(*focus.window) == window;
}

}  // namespace

KeyboardFocus keyboardFocus(platform::Pid pid) {
  const std::vector<ax::Slot> slots =
      messages::attributes(ax::application(pid), {"AXFocusedWindow", "AXFocusedUIElement"});
  return {elementIn(slots[0].value), slots[1].value.has_value()};
}

bool focus(platform::Pid pid, platform::WindowNumber window, bool give) {
  std::optional<Receiver> receiver = receiverFor(pid);
  if (!receiver) return false;
  // Looking up to whom takes its time.
  if (give && isEnding()) return false;
  const bool accepted = receiver->accepts(focusRecord(window, give));
  // After a refusal too: whether the server has done nothing of it is not known.
  loop::sleepMicroseconds(focusPauseMicroseconds);
  return accepted;
}

bool makeKey(platform::Pid pid, platform::WindowNumber window,
             const std::function<bool()>& mayChange) {
  if (isKey(pid, window)) return true;
  std::optional<Receiver> receiver = receiverFor(pid);
  if (!receiver || !mayChange() || !clicksAsKey(*receiver, window)) return false;
  loop::sleepMicroseconds(keyPauseMicroseconds);
  return true;
}

}  // namespace driver::Sky
