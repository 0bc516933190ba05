#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/image.h"
#include "platform/quartz.h"
#include "platform/types.h"

namespace driver {

/// The words of a command line: the tool's own path, the command, its arguments.
using Arguments = std::vector<std::string>;

/// The value of field `sourceUserData` of every event this tool posts, by which its own watchers
/// know it.
inline constexpr std::int64_t ownEventTag = 0x5A545256;

/// Input focus that is held for a process beyond one command.
struct HeldFocus {
  std::int64_t count = 0;  // nested holds, at least 1
  platform::WindowNumber window = 0;
};

/// The state of one run. Texts are well-formed UTF-8.
struct Globals {
  /// The window the agent is confined to, lower-cased and not trimmed. Absent: every window.
  std::optional<std::string> windowScope;

  /// The event source of the HID system state, for pointer moves.
  std::optional<quartz::Source> src;

  /// Set when input was withheld because the session had become unusable. Never cleared.
  bool droppedWhileLocked = false;

  std::map<platform::Pid, HeldFocus> heldInputFocus;

  /// Seconds for which the guard bears with the user's return. Finite, not negative.
  double guardGrace = 0;

  /// Whether the guard's cover starts with the wording of an agent at work.
  bool guardOperating = false;

  /// The agent's picture on the cover.
  std::optional<image::Image> guardOruFace;

  /// How the cover calls the user.
  std::string guardOruName;

  Arguments args;

  /// The positions in `args` of words that were no well-formed UTF-8.
  std::set<std::size_t> repairedArgs;

  /// What was looked up of libraries and symbols so far; null is a final absence. Keys are
  /// constants of the caller.
  std::map<std::string_view, void*> lookedUpAddresses;

  /// How often an accessibility message to a process ran into the full time-out.
  std::map<platform::Pid, int> messageTimeOuts;

  /// What frames have still to undo, oldest first.
  std::vector<std::function<void()>> pendingUndos;
};

/// The state of this run. `initialise` has been called.
Globals& globals();

/// Starts a run: replaces all state by fresh start-up values, which are read from the environment,
/// and takes over the command line, repaired to UTF-8.
void initialise(const std::vector<std::string>& commandLine);

}  // namespace driver
