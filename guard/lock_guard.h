#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "main/arguments.h"

namespace driver {

/// Covers every screen and watches for the user's return, until something ends it: that, a signal,
/// a request to terminate, the end of standard input or of the application's loop. Whatever it is,
/// the screen is locked first, but for a return while grace lasts. Fails when the system lets
/// nobody watch.
[[noreturn]] void lockGuard();

/// "lock-guard": the same.
void lockGuardCommand(const Arguments& arguments);

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
