#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "base/geometry.h"
#include "base/value.h"

namespace driver {

/// The answer to a command. It has "ok", and "error" when that is false. Numbers are finite; texts
/// may be ill-formed until they are written.
using Reply = Value::Object;

/// A refusal found in a deeper layer.
class InputFailure : public std::exception {
 public:
  explicit InputFailure(std::string message);

  /// The text for the caller of a command.
  const std::string& message() const { return message_; }

  /// The description for clients of the capture group: InputFailure(message: "..."). Whole, where
  /// `what` ends at a NUL, which a client's words may hold.
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  std::string message_;
  std::string description_;
};

/// "x", "y", "width" and "height" of a rectangle.
Value::Object geometryOf(const Rect& rect);

/// A reply that says what went wrong.
Reply refusal(std::string error);

/// The same for a session that is locked or away from the console.
Reply lockedRefusal(std::string error);

/// Writes one reply as a line of JSON with sorted keys. False when not all of it could be written.
/// As every line it also says "copyLost": true and "clipboardRestored": false where that is so.
/// When input was withheld in this run because the screen locked, `failWithheld` takes the place of
/// a success.
bool emit(const Reply& reply);

/// Writes one reply as such a line in one piece, but gives up when the reader does not take it in
/// time. False then. A pipe takes a line up to its atomic size whole, or not at all.
bool emitWithin(const Reply& reply, std::uint32_t microseconds);

/// Writes the refusal of a run whose input was withheld because the screen locked, and ends the
/// process with status 1.
[[noreturn]] void failWithheld();

/// Undoes what frames have still to undo, writes a refusal and ends the process with status 1.
[[noreturn]] void fail(const std::string& message);

/// Writes the last line of a process whose flows share the output, or nothing when that takes
/// longer. No other flow writes after it.
void emitLastWithin(const Reply& reply, std::uint32_t microseconds);

/// Takes the right to write for good: no line follows, and none is under way.
void endOutput();

}  // namespace driver
