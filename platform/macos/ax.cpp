#include "platform/ax.h"

#include <ApplicationServices/ApplicationServices.h>

#include <utility>

#include "platform/loop.h"
#include "platform/macos/ax_values.h"
#include "platform/macos/core_foundation.h"
#include "platform/macos/same_numbers.h"

namespace ax {

namespace {

using macos::Owned;
using macos::sameNumber;

static_assert(sameNumber(Error::success, kAXErrorSuccess));
static_assert(sameNumber(Error::failure, kAXErrorFailure));
static_assert(sameNumber(Error::illegalArgument, kAXErrorIllegalArgument));
static_assert(sameNumber(Error::invalidElement, kAXErrorInvalidUIElement));
static_assert(sameNumber(Error::cannotComplete, kAXErrorCannotComplete));
static_assert(sameNumber(Error::attributeUnsupported, kAXErrorAttributeUnsupported));
static_assert(sameNumber(Error::actionUnsupported, kAXErrorActionUnsupported));
static_assert(sameNumber(Error::notImplemented, kAXErrorNotImplemented));
static_assert(sameNumber(Error::apiDisabled, kAXErrorAPIDisabled));
static_assert(sameNumber(Error::noValue, kAXErrorNoValue));

constexpr float messagingTimeoutSeconds = 6;
constexpr AXCopyMultipleAttributeOptions readAllAttributes = 0;

AXUIElementRef native(const Element& element) { return static_cast<AXUIElementRef>(element.get()); }

// Set for the whole process, so that the time-out is what callers rely on, whatever the system's
// default.
void setMessagingTimeout() {
  static const AXError once = [] {
    const Owned<AXUIElementRef> everything(AXUIElementCreateSystemWide());
    return AXUIElementSetMessagingTimeout(everything.get(), messagingTimeoutSeconds);
  }();
  static_cast<void>(once);
}

// Sends one message and tells how it went.
template <class Send>
Outcome message(Send&& send) {
  setMessagingTimeout();
  const std::uint64_t start = loop::uptimeNanoseconds();
  const AXError error = send();
  const bool timedOut =
      error == kAXErrorCannotComplete && loop::uptimeNanoseconds() - start >= timedOutNanoseconds;
  return {static_cast<Error>(error), timedOut};
}

Owned<CFArrayRef> strings(const std::vector<const char*>& names) {
  std::vector<Owned<CFStringRef>> strings;
  std::vector<CFTypeRef> borrowed;
  for (const char* name : names) {
    strings.push_back(macos::string(name));
    borrowed.push_back(strings.back().get());
  }
  return macos::array(borrowed);
}

CFTypeRef elementAt(CFArrayRef values, std::size_t index) {
  const auto at = static_cast<CFIndex>(index);
  return at < CFArrayGetCount(values) ? CFArrayGetValueAtIndex(values, at) : nullptr;
}

}  // namespace

Element application(platform::Pid pid) {
  return Element(macos::shared(Owned<AXUIElementRef>(AXUIElementCreateApplication(pid))));
}

platform::Pid pid(const Element& element) {
  pid_t pid = 0;
  AXUIElementGetPid(native(element), &pid);
  return pid;
}

Reading attribute(const Element& element, const char* name) {
  const Owned<CFStringRef> attribute = macos::string(name);
  Owned<CFTypeRef> value;
  Outcome outcome = message(
      [&] { return AXUIElementCopyAttributeValue(native(element), attribute.get(), value.out()); });
  if (outcome.error != Error::success) return {std::nullopt, outcome};
  Slot slot = macos::slot(value.get());
  outcome.error = slot.error;
  return {std::move(slot.value), outcome};
}

Readings attributes(const Element& element, const std::vector<const char*>& names) {
  const Owned<CFArrayRef> attributes = strings(names);
  Owned<CFArrayRef> values;
  const Outcome outcome = message([&] {
    return AXUIElementCopyMultipleAttributeValues(native(element), attributes.get(),
                                                  readAllAttributes, values.out());
  });
  if (outcome.error != Error::success) return {{}, outcome};
  Readings readings = {std::vector<Slot>(names.size()), outcome};
  for (std::size_t i = 0; values && i < names.size(); ++i) {
    readings.slots[i] = macos::slot(elementAt(values.get(), i));
  }
  return readings;
}

ActionNames actionNames(const Element& element) {
  Owned<CFArrayRef> actions;
  ActionNames result;
  result.outcome =
      message([&] { return AXUIElementCopyActionNames(native(element), actions.out()); });
  if (result.outcome.error != Error::success || !actions) return result;
  for (CFIndex i = 0; i < CFArrayGetCount(actions.get()); ++i) {
    std::optional<std::string> name = macos::text(CFArrayGetValueAtIndex(actions.get(), i));
    if (name) result.names.push_back(std::move(*name));
  }
  return result;
}

Hit elementAt(const Element& application, platform::Point point) {
  Owned<AXUIElementRef> element;
  Hit hit;
  hit.outcome = message([&] {
    return AXUIElementCopyElementAtPosition(native(application), static_cast<float>(point.x),
                                            static_cast<float>(point.y), element.out());
  });
  if (hit.outcome.error == Error::success && element) {
    hit.element = Element(macos::shared(std::move(element)));
  }
  return hit;
}

Outcome perform(const Element& element, const char* action) {
  const Owned<CFStringRef> name = macos::string(action);
  return message([&] { return AXUIElementPerformAction(native(element), name.get()); });
}

Outcome setAttribute(const Element& element, const char* name, const Value& value) {
  const Owned<CFStringRef> attribute = macos::string(name);
  const Owned<CFTypeRef> object = macos::object(value);
  if (!object) return {Error::illegalArgument, false};
  return message(
      [&] { return AXUIElementSetAttributeValue(native(element), attribute.get(), object.get()); });
}

std::uint64_t hash(const Element& element) { return CFHash(element.get()); }

std::uint64_t hash(const Value& value) {
  const Owned<CFTypeRef> object = macos::object(value);
  return object ? CFHash(object.get()) : 0;
}

bool trusted() { return AXIsProcessTrusted() != 0; }

}  // namespace ax
