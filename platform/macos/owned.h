#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <utility>

namespace macos {

/// Owns one reference to a Core Foundation object, or nothing.
template <class Reference>
class Owned {
 public:
  Owned() = default;

  /// Takes over the reference that a Create or Copy function returned; it may be null.
  explicit Owned(Reference reference) : reference_(reference) {}

  Owned(Owned&& other) noexcept : reference_(other.release()) {}
  Owned& operator=(Owned&& other) noexcept {
    std::swap(reference_, other.reference_);
    return *this;
  }
  ~Owned() {
    if (reference_ != nullptr) CFRelease(reference_);
  }

  explicit operator bool() const { return reference_ != nullptr; }

  /// Borrowed.
  Reference get() const { return reference_; }

  /// Gives the reference up to the caller.
  Reference release() { return std::exchange(reference_, nullptr); }

  /// Where a Copy function shall put its result. Only for one that owns nothing yet.
  Reference* out() { return &reference_; }

 private:
  Reference reference_ = nullptr;
};

/// One more reference to a borrowed object, which is not null.
template <class Reference>
Owned<Reference> retained(Reference borrowed) {
  CFRetain(borrowed);
  return Owned<Reference>(borrowed);
}

/// The reference as a platform handle holds it: the last copy releases it. Not null.
template <class Reference>
std::shared_ptr<void> shared(Owned<Reference> owned) {
  return {const_cast<void*>(static_cast<const void*>(owned.release())),
          [](void* object) { CFRelease(object); }};
}

}  // namespace macos
