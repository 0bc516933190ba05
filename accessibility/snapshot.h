#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "accessibility/attributes.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// An element with what has been read of it. Each attribute is read once: by `read`, together with
/// others, or by itself when it is first asked for. So a snapshot tells how the element was then; a
/// look after a press, a write or a wait takes a new one.
///
/// What the accessors return is borrowed until the next read.
class Snapshot {
 public:
  explicit Snapshot(ax::Element element);
  Snapshot(Snapshot&& other) noexcept;
  Snapshot& operator=(Snapshot&& other) noexcept;
  ~Snapshot();

  const ax::Element& element() const { return element_; }

  /// Reads those of the attributes that have not been read yet, in one round trip; in none when
  /// there is nothing left to read.
  void read(const Batch& batch);
  void read(AttributeSet set);

  /// The attribute as the type asked for; null when it is absent or of another type.
  template <class T>
  const T* get(Attribute attribute) {
    const ax::Slot& slot = slotOf(attribute);
    return slot.value ? slot.value->template get<T>() : nullptr;
  }

  const std::string* text(Attribute attribute) { return get<std::string>(attribute); }

  /// True when the attribute is the Boolean asked about. One that is absent is neither.
  bool isTrue(Attribute attribute);
  bool isFalse(Attribute attribute);

  /// The attribute as a finite number. A Boolean is none.
  std::optional<double> number(Attribute attribute);

  std::optional<ax::Element> related(Attribute attribute);

  /// How reading the attribute went.
  ax::Error error(Attribute attribute) { return slotOf(attribute).error; }

  /// The role; empty when it cannot be read.
  std::string_view role();

  /// The children, in the element's order; none when they are not all elements. They stay the same
  /// objects and keep what is read of them.
  std::vector<Snapshot>& children();

  /// The same, given away with what has been read of them: asked again, the element is read again.
  std::vector<Snapshot> takeChildren();

  /// Gives it back children that were taken, of which nothing has been read.
  void giveChildren(std::vector<ax::Element> children);

 private:
  struct Known;

  ax::Slot& slotOf(Attribute attribute);

  ax::Element element_;
  std::unique_ptr<Known> known_;
};

/// The first text that is not empty of title, description, placeholder and help; else empty.
std::string axLabel(Snapshot& element);

/// The frame in global points; absent when it cannot be read or is not finite. It may be empty.
std::optional<platform::Rect> axFrame(Snapshot& element);

}  // namespace driver
