#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "main/arguments.h"
#include "platform/event_tap.h"

namespace driver {

/// Covers every screen and watches for the user's return, until something ends it: that, a signal,
/// a request to terminate, the end of standard input or of the application's loop. Whatever it is,
/// the screen is locked first, but for a return while grace lasts. Fails when the system lets
/// nobody watch.
[[noreturn]] void lockGuard();

/// "lock-guard": the same.
void lockGuardCommand(const Arguments& arguments);

/// What becomes of an event of the guard's tap. The user's return ends the guard: it locks the
/// screen or, while grace lasts, does not. Up to the lock nothing is allocated and nobody is asked,
/// but for the clocks while grace may last.
tap::Verdict guardVerdict(const tap::Event& event);

/// Locks the screen, says why the guard ends, and ends the process with status 0 half a second
/// later. Only the first call locks and writes. Main flow only.
[[noreturn]] void lockAndExit(std::string_view by);

/// From now on any other exit of the process locks too, one that a framework makes for example. An
/// end that this guard has decided has locked already, or is the user's in grace.
void lockAtAnyExit();

/// Reads what the agent tells its guard: lines that end with a line feed, in pieces as they come.
/// However long a line is, a few bytes of it are kept.
class GuardInput {
 public:
  /// Takes in the next bytes. What the last of the lines "operating" (true) and "minding" (false)
  /// in them says; none when no such line has ended. Blanks (spaces and tabs) around the word do
  /// not count; any other line says nothing.
  std::optional<bool> feed(std::string_view bytes);

 private:
  void add(char c);
  std::optional<bool> meaning() const;

  std::string word_;          // the line's, as far as it matters
  bool blankBehind_ = false;  // blanks have come since
  bool isOther_ = false;      // the line can be neither word any more
};

}  // namespace driver
