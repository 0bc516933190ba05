#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// The attributes that are read of elements. Messages ask for them in this order, so traces and the
/// answers that tests make by hand depend on it: a new one goes to the end.
enum class Attribute : std::uint8_t {
  role,
  subrole,
  children,
  title,
  description,
  placeholder,
  help,
  position,
  size,
  enabled,
  editable,
  focused,
  modal,
  parent,
  window,
  value,
  lowestValue,
  highestValue,
  selectedRange,
  menuCharacter,
  menuModifiers,
};

inline constexpr std::size_t attributeCount =
    static_cast<std::size_t>(Attribute::menuModifiers) + 1;

/// The platform's name of the attribute.
const char* nameOf(Attribute attribute);

/// Some of the attributes.
class AttributeSet {
 public:
  constexpr AttributeSet() = default;
  constexpr AttributeSet(std::initializer_list<Attribute> attributes) {
    for (const Attribute attribute : attributes) bits_ |= bitOf(attribute);
  }

  constexpr bool empty() const { return bits_ == 0; }
  constexpr bool contains(Attribute attribute) const { return (bits_ & bitOf(attribute)) != 0; }

  /// How many of the set come before the attribute.
  constexpr std::size_t indexOf(Attribute attribute) const {
    return static_cast<std::size_t>(std::popcount(bits_ & (bitOf(attribute) - 1)));
  }

  friend constexpr AttributeSet operator|(AttributeSet a, AttributeSet b) {
    a.bits_ |= b.bits_;
    return a;
  }

  /// Those of `a` that are not in `b`.
  friend constexpr AttributeSet operator-(AttributeSet a, AttributeSet b) {
    a.bits_ &= ~b.bits_;
    return a;
  }

 private:
  static constexpr std::uint32_t bitOf(Attribute attribute) {
    return std::uint32_t{1} << static_cast<std::uint32_t>(attribute);
  }

  std::uint32_t bits_ = 0;
};

/// What `axLabel` reads, and `axFrame`.
inline constexpr AttributeSet labelAttributes = {Attribute::title, Attribute::description,
                                                 Attribute::placeholder, Attribute::help};
inline constexpr AttributeSet frameAttributes = {Attribute::position, Attribute::size};

/// What a walk must read to go on, and to know a text when it meets one.
inline constexpr AttributeSet structureAttributes = {Attribute::role, Attribute::children};

/// Attributes that are read together, in one message.
class Batch {
 public:
  explicit Batch(AttributeSet set);

  AttributeSet set() const { return set_; }

  /// Their names, in the order of the attributes.
  const std::vector<const char*>& names() const { return names_; }

 private:
  AttributeSet set_;
  std::vector<const char*> names_;
};

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

/// The same of an element that is read for it now.
std::string axLabel(const ax::Element& element);

/// The frame in global points; absent when it cannot be read or is not finite. It may be empty.
std::optional<platform::Rect> axFrame(Snapshot& element);

/// Whether the element has a frame of more than a point in both directions.
bool isLargeEnoughToSee(Snapshot& element);

/// The text of a static text, if it has one that is not empty; null for any other element.
const std::string* staticText(Snapshot& element);

/// The static texts in and below the element, in reading order, joined by spaces and cut to
/// `maxLength` characters. Visits `budget` elements at most; none when it is negative. Of each it
/// reads `each`, and the value of a static text; a walk that comes to them later finds it read.
std::string axText(Snapshot& element, const Batch& each, int budget = 40,
                   std::size_t maxLength = 120);

/// The same of an element that is read for it now.
std::string axText(const ax::Element& element, int budget = 40, std::size_t maxLength = 120);

}  // namespace driver
