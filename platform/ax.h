#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/types.h"

/// The Accessibility API: elements of other applications. Every function but those marked local is
/// one round trip to the application that owns the element.
namespace ax {

/// An accessibility element of another process. Copies share it.
using Element = platform::Handle<struct ElementTag>;

/// A range of text in UTF-16 units.
struct Range {
  std::int64_t location = 0;
  std::int64_t length = 0;
  friend bool operator==(const Range&, const Range&) = default;
};

/// A value of a type that nothing here looks into (an address, attributed text, a date). It can
/// only be hashed.
using Opaque = platform::Handle<struct OpaqueTag>;

/// An attribute's value. Texts are well-formed UTF-8. Geometry is in global points and as the
/// application gave it: not checked to be finite.
struct Value {
  std::variant<Opaque, std::string, bool, std::int64_t, double, Element, std::vector<Value>,
               platform::Point, platform::Size, platform::Rect, Range>
      data;

  /// The value as the type asked for, or null when it is of another type. Borrowed.
  template <class T>
  const T* get() const {
    return std::get_if<T>(&data);
  }
};

/// The platform's own codes; others may occur.
enum class Error : std::int32_t {
  success = 0,
  failure = -25200,
  illegalArgument = -25201,
  invalidElement = -25202,
  cannotComplete = -25204,
  attributeUnsupported = -25205,
  actionUnsupported = -25206,
  notImplemented = -25208,
  apiDisabled = -25211,
  noValue = -25212,
};

/// A message that has not been answered for so long has run into the messaging time-out of six
/// seconds; the system may start to count a little before its caller does.
inline constexpr std::uint64_t timedOutNanoseconds = 5'900'000'000;

/// How one message to an application went.
struct Outcome {
  Error error = Error::success;
  /// The application did not answer within the messaging time-out (six seconds); `error` is then
  /// `cannotComplete`.
  bool timedOut = false;
};

/// One attribute as it was read: a value, or the error of this attribute alone.
struct Slot {
  std::optional<Value> value;
  Error error = Error::success;
};

/// One attribute of one element.
struct Reading {
  std::optional<Value> value;
  Outcome outcome;
};

/// Several attributes of one element, read in one round trip. When the message itself succeeded
/// there is one slot for each name asked for, in that order; otherwise there are none.
struct Readings {
  std::vector<Slot> slots;
  Outcome outcome;
};

/// What lies at a point.
struct Hit {
  std::optional<Element> element;
  Outcome outcome;
};

/// The names of an element's actions, in the platform's order.
struct ActionNames {
  std::vector<std::string> names;
  Outcome outcome;
};

/// The application element of a process. Local: it says nothing about whether the process exists.
Element application(platform::Pid pid);

/// The process that owns the element. Local.
platform::Pid pid(const Element& element);

Reading attribute(const Element& element, const char* name);
Readings attributes(const Element& element, const std::vector<const char*>& names);
ActionNames actionNames(const Element& element);

/// The innermost element of an application at a global point, as the user sees its windows; none
/// when nothing of it is there. `application` is an application element.
Hit elementAt(const Element& application, platform::Point point);

/// Performs an action of the element. An application that opens a dialog may answer
/// `cannotComplete` although the action ran.
Outcome perform(const Element& element, const char* action);

/// Writes one attribute.
Outcome setAttribute(const Element& element, const char* name, const Value& value);

/// The platform's hash. Local. Equal elements, and equal values, have equal hashes.
std::uint64_t hash(const Element& element);
std::uint64_t hash(const Value& value);

/// True when this process is trusted for accessibility. Never prompts.
bool trusted();

}  // namespace ax
