#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <vector>

namespace driver {

/// The attributes that are read of elements. Messages ask for them in this order.
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

inline constexpr std::size_t attributeCount = 21;

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

}  // namespace driver
