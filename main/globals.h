#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cover.h"
#include "platform/event_tap.h"
#include "platform/image.h"
#include "platform/loop.h"
#include "platform/quartz.h"
#include "platform/types.h"

namespace driver {

/// The value of field `sourceUserData` of every event this tool posts, by which its own watchers
/// know it.
inline constexpr std::int64_t ownEventTag = 0x5A545256;

/// Input focus that is held for a process beyond one command.
struct HeldFocus {
  std::int64_t count = 0;  // nested holds, at least 1
  platform::WindowNumber window = 0;
};

/// The system's function that locks the screen; it returns a status.
using ScreenLock = std::int32_t (*)();

/// What has become of the guard's attempt to watch for the user's return.
enum class GuardWatch { undecided, begun, failed };

/// A label of a cover, as it is shown.
struct CoverLabel {
  std::size_t panel = 0;
  platform::Rect screen;  // that the panel covers
  cover::Label label;
};

/// The state of one run. Texts are well-formed UTF-8. What several flows use is marked as shared:
/// it is read and written under `mutex`.
struct Globals {
  /// Never held over a call of the seam.
  std::mutex mutex;

  /// Another flow than the one that works is ending the process. Shared, as are the acts and the
  /// undos under way.
  bool ending = false;
  int actsUnderWay = 0;
  int undosUnderWay = 0;

  /// The one line of a run has been begun, while nobody was ending the process. Shared.
  bool replied = false;

  /// Several flows write lines: each takes the right to do so before. Set before they start.
  bool sharesOutput = false;

  /// The window the agent is confined to, lower-cased and not trimmed. Absent: every window.
  std::optional<std::string> windowScope;

  /// The event source of the HID system state, for pointer moves.
  std::optional<quartz::Source> src;

  /// Set when input was withheld because the session had become unusable. Never cleared.
  bool droppedWhileLocked = false;

  /// Somebody copied something in the instant between the last look at the clipboard and a clearing
  /// of it by this run. Never cleared.
  bool copyLost = false;

  /// The clipboard did not take back what it had held. Never cleared.
  bool clipboardNotRestored = false;

  /// Shared.
  std::map<platform::Pid, HeldFocus> heldInputFocus;

  /// When the input watcher last reported: seconds since the beginning of 1970; 0 for never.
  double lastInputReport = 0;

  /// The process that the input watcher watches over, if any, and its tap.
  std::optional<platform::Pid> watchedInputPID;
  std::optional<tap::Tap> inputTap;

  /// Seconds for which the guard bears with the user's return. Finite, not negative.
  double guardGrace = 0;

  /// Whether the guard's cover starts with the wording of an agent at work.
  bool guardOperating = false;

  /// The agent's picture on the cover.
  std::optional<image::Image> guardOruFace;

  /// How the cover calls the user.
  std::string guardOruName;

  /// The other pictures of the covers: the user's, and the icon of the application that this tool
  /// belongs to. Absent: there is none, or it has not been looked up.
  std::optional<image::Image> guardUserPicture;
  std::optional<image::Image> guardAppIcon;

  /// Until when grace lasts, in seconds since the beginning of 1970. Absent: there is none. When it
  /// began, in such seconds and in those for which the machine had been awake.
  std::optional<double> guardGraceUntil;
  double guardGraceStart = 0;
  double guardGraceStartAwake = 0;

  /// Whether the guard has come to watch for the user's return. Decided once, by the main flow or
  /// by the one that does not wait for it any longer.
  std::atomic<GuardWatch> guardWatch = GuardWatch::undecided;

  /// How the main flow says that it has.
  std::optional<loop::Semaphore> guardBegun;

  /// The guard's tap. `guardRelocking`: it has decided that the guard ends, and swallows all input.
  /// `guardAwaitsNotice`: the tap was seen disabled, and no notice of that has come since.
  std::optional<tap::Tap> guardTap;
  std::atomic<bool> guardRelocking = false;
  bool guardAwaitsNotice = false;

  /// Set by the first `lockAndExit`, or by the flow that ends a guard whose main flow is stuck.
  std::atomic<bool> guardExiting = false;

  /// `lockAndExit` has left the end to another flow, which waits for the lock.
  bool guardAwaitsLock = false;

  /// With which wording the agent wants the covers next, until the main flow has seen to it.
  /// Shared.
  std::optional<bool> guardWantsOperating;

  /// What locks the screen. Null: it has not been looked up, or is missing.
  ScreenLock screenLock = nullptr;

  /// How the flow that stands by to lock is told to, how it answers, and what; absent: there is no
  /// such flow.
  std::optional<loop::Semaphore> lockAsked;
  std::optional<loop::Semaphore> lockAnswered;
  std::atomic<bool> lockAccepted = false;

  /// The titles and the hints of all covers, in the order of their making, and their language.
  std::vector<CoverLabel> guardTitles;
  std::vector<CoverLabel> guardHints;
  bool guardChinese = false;

  /// The words of the command line: the tool's own path, the command, its arguments.
  std::vector<std::string> args;

  /// The positions in `args` of words that were no well-formed UTF-8.
  std::set<std::size_t> repairedArgs;

  /// What was looked up of libraries and symbols so far; null is a final absence. Keys are
  /// constants of the caller. Shared.
  std::map<std::string_view, void*> lookedUpAddresses;

  /// How often an accessibility message to a process ran into the full time-out, in this run or,
  /// when it serves requests, in this request.
  std::map<platform::Pid, int> messageTimeOuts;

  /// What frames have still to undo, oldest first. Shared.
  std::vector<std::function<void()>> pendingUndos;
};

/// The state of this run. `renewGlobals` has been called.
Globals& globals();

/// Starts a run: replaces all state by that of a run of which nothing is known yet.
void renewGlobals();

/// Where several processes are played in one: `state` is that of the process whose turn it is, from
/// now on. Gives that of before; either may be none.
std::unique_ptr<Globals> exchangeGlobals(std::unique_ptr<Globals> state);

/// Fills fresh state: with start-up values, which are read from the environment, and with the
/// command line, repaired to UTF-8.
void initialise(const std::vector<std::string>& commandLine);

}  // namespace driver
