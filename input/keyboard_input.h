#pragma once

#include <cstddef>
#include <optional>

#include "main/replies.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// What receives keyboard input.
struct KeyboardTarget {
  platform::Pid pid = 0;
  platform::WindowNumber window = 0;
};

/// The user has gone to another window of the process, or from a process in front to another: what
/// was left of an input was withheld.
class KeyboardTaken : public InputFailure {
 public:
  using InputFailure::InputFailure;
};

/// One keyboard input on its way to one window. The window was chosen for it once; the user may
/// come to the process at any time since, where the keys would then go to the window that the user
/// has chosen. So each piece of a text and each combination asks again, right before it is posted.
class KeyboardInput {
 public:
  /// `inFront`: the process was in front when it was chosen, and so was given no focus.
  explicit KeyboardInput(KeyboardTarget target, bool inFront = false)
      : target_(target), inFront_(inFront) {}

  platform::Pid pid() const { return target_.pid; }

  /// The window that has the process's keyboard, asked now; none when that cannot be read.
  std::optional<ax::Element> keyWindow() const;

  /// Whether the window has its process's keyboard, asked now. When that cannot be read, it does
  /// not.
  bool hasKeyboard() const;

  /// Throws KeyboardTaken when the process is in front and its keyboard not in the window, and when
  /// it was in front, is so no more, and nobody holds its focus. Asked now; where the system does
  /// not tell who is in front, nobody has come or gone.
  void requireKeyboard() const;

  /// Counts what has been posted of a text, in UTF-16 units; a line break is one.
  void noteTyped(std::size_t units) { typed_ += units; }
  std::size_t typed() const { return typed_; }

 private:
  KeyboardTarget target_;
  bool inFront_;
  std::size_t typed_ = 0;
};

}  // namespace driver
