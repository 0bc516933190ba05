#pragma once

#include <functional>
#include <memory>

namespace testing_support {

/// A course of action that takes turns with others on one thread: it goes on only while somebody
/// has resumed it. It has a stack of its own, as large as a thread's; to begin one and to pass on
/// the turn costs a small part of what it costs with threads.
class Fiber {
 public:
  /// The body begins when it is resumed for the first time. It lets no exception out.
  explicit Fiber(std::function<void()> body);
  Fiber(const Fiber&) = delete;
  Fiber& operator=(const Fiber&) = delete;

  /// The body has ended, or has never begun.
  ~Fiber();

  /// Lets the body go on until it suspends itself or ends. Called from anywhere but the body.
  void resume();

  /// Called from the body, also within a handler of an exception: goes back to who resumed it. It
  /// returns when the body is resumed again.
  void suspend();

  bool isOver() const;

 private:
  class Implementation;
  std::unique_ptr<Implementation> implementation_;
};

}  // namespace testing_support
