#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/geometry.h"
#include "platform/process.h"
#include "platform/types.h"

/// What belongs to the user rather than to an application: the devices, and how the system is set
/// up.
namespace simulator {

enum class KeyboardLayout { us, german, french, japanese };

struct Keyboard {
  KeyboardLayout layout = KeyboardLayout::us;
  std::uint64_t modifiers = 0;  // that the user holds down, as quartz::Modifier has them
};

/// A mouse button that the user holds down.
struct HeldButton {
  platform::WindowNumber window = 0;  // that took the press; 0: none did
  bool dragged = false;
};

/// A click of the user's left button. One that follows soon enough in the same place is its second.
struct UserClick {
  std::int64_t at = 0;  // microseconds of virtual time
  driver::Point point;
  std::int64_t state = 0;  // how many there have been there
};

/// When the user last did something, in microseconds of virtual time.
struct Activity {
  std::optional<std::int64_t> before = 0;           // before the Mac was watched; absent: never
  std::map<std::uint32_t, std::int64_t> lastTimes;  // by event type
};

/// What a process gets when it reads what others have copied.
enum class PasteboardReads {
  free,     // all of it
  refused,  // the items without their data
  hanging   // no answer
};

/// What becomes of the stream of a shared window that has closed.
enum class ClosedWindowSharing {
  goesOn,    // nothing
  inactive,  // it has no frames until it gets another window
  stopped    // the system stops it and says why
};

/// The system as it is set up. What its releases make of it is in text/releases.h.
struct System {
  std::vector<std::string> languages = {"en"};
  process::Version version{14, 2};
  bool asksForRecording = false;  // the user, before the next capture
  PasteboardReads pasteboardReads = PasteboardReads::free;
  bool givesKeyTaps = true;  // those that filter keys, to processes that have no windows
  ClosedWindowSharing closedWindowSharing = ClosedWindowSharing::goesOn;
  std::optional<std::string> directory;          // absent: the user's home
  std::map<std::string, platform::Bytes> tools;  // what the programs at these paths write
  std::map<std::string, std::string> links;      // symbolic links, by their paths
};

/// The path from `directory`, where it is not absolute, with the symbolic links in it resolved, and
/// "." and ".." with them. A circle of links is left as it is.
std::string resolved(const System& system, std::string_view directory, std::string_view path);

}  // namespace simulator
