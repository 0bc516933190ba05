#include "platform/macos/standins/accessibility.h"

#include <cstring>
#include <utility>

#include "platform/loop.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/strings.h"

namespace standins {

namespace {

struct Application {
  Answer answer;
  std::uint64_t now = 0;
  float timeoutSeconds = 0;
  bool trusted = false;
};

Application& application() {
  static Application application;
  return application;
}

struct Element : Object {
  Element(pid_t pid, std::string name) : Object(Type::element), pid(pid), name(std::move(name)) {}
  std::string describe() const override { return name + " of " + std::to_string(pid); }
  pid_t pid;
  std::string name;
};

constexpr auto unknownType = static_cast<AXValueType>(77);

std::size_t sizeOf(AXValueType type) {
  switch (type) {
    case kAXValueTypeCGPoint:
      return sizeof(CGPoint);
    case kAXValueTypeCGSize:
      return sizeof(CGSize);
    case kAXValueTypeCGRect:
      return sizeof(CGRect);
    case kAXValueTypeCFRange:
      return sizeof(CFRange);
    case kAXValueTypeAXError:
      return sizeof(AXError);
    default:
      return 0;
  }
}

struct Box : Object {
  Box(AXValueType kind, const void* content) : Object(Type::boxedValue), kind(kind) {
    std::memcpy(bytes, content, sizeOf(kind));
  }
  std::string describe() const override;
  AXValueType kind;
  char bytes[sizeof(CGRect)] = {};
};

template <class Number>
std::string numbers(const char* bytes, std::size_t count) {
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    Number number = {};
    std::memcpy(&number, bytes + i * sizeof number, sizeof number);
    text += ' ' + std::to_string(number);
  }
  return text;
}

std::string Box::describe() const {
  switch (kind) {
    case kAXValueTypeCGPoint:
      return "point" + numbers<double>(bytes, 2);
    case kAXValueTypeCGSize:
      return "size" + numbers<double>(bytes, 2);
    case kAXValueTypeCGRect:
      return "rect" + numbers<double>(bytes, 4);
    case kAXValueTypeCFRange:
      return "range" + numbers<CFIndex>(bytes, 2);
    case kAXValueTypeAXError:
      return "error" + numbers<SInt32>(bytes, 1);
    default:
      return "box of type " + std::to_string(kind);
  }
}

AXValueRef box(AXValueType type, const void* content) {
  return reinterpret_cast<AXValueRef>(entered(new Box(type, content)));
}

AXError send(const std::string& call, AXUIElementRef receiver) {
  record(call + " " + describe(receiver));
  application().now += application().answer.nanoseconds;
  return application().answer.error;
}

// Gives one more reference to what was read.
template <class Reference>
AXError read(const std::string& call, AXUIElementRef receiver, Reference* value) {
  const AXError error = send(call, receiver);
  const CFTypeRef answer = application().answer.value;
  if (error != kAXErrorSuccess || answer == nullptr) return error;
  *value = static_cast<Reference>(CFRetain(answer));
  return error;
}

}  // namespace

void answerWith(const Answer& answer) {
  if (answer.value != nullptr) keep(answer.value);
  application().answer = answer;
}

float messagingTimeoutSeconds() { return application().timeoutSeconds; }

void setTrusted(bool trusted) { application().trusted = trusted; }

AXUIElementRef element(pid_t pid, std::string name) {
  return reinterpret_cast<AXUIElementRef>(entered(new Element(pid, std::move(name))));
}

AXValueRef boxed(CGPoint point) { return box(kAXValueTypeCGPoint, &point); }
AXValueRef boxed(CGSize size) { return box(kAXValueTypeCGSize, &size); }
AXValueRef boxed(CGRect rect) { return box(kAXValueTypeCGRect, &rect); }
AXValueRef boxed(CFRange range) { return box(kAXValueTypeCFRange, &range); }
AXValueRef boxed(AXError error) { return box(kAXValueTypeAXError, &error); }
AXValueRef boxedIllegal() { return box(kAXValueTypeIllegal, ""); }
AXValueRef boxedUnknown() { return box(unknownType, ""); }

}  // namespace standins

using namespace standins;

std::uint64_t loop::uptimeNanoseconds() { return application().now; }

CFTypeID AXValueGetTypeID() { return CFTypeID(Type::boxedValue); }
CFTypeID AXUIElementGetTypeID() { return CFTypeID(Type::element); }

AXValueRef AXValueCreate(AXValueType theType, const void* valuePtr) {
  return box(theType, valuePtr);
}

AXValueType AXValueGetType(AXValueRef value) { return as<Box>(value)->kind; }

Boolean AXValueGetValue(AXValueRef value, AXValueType theType, void* valuePtr) {
  const Box* content = as<Box>(value);
  if (content->kind != theType) return false;
  std::memcpy(valuePtr, content->bytes, sizeOf(theType));
  return true;
}

AXUIElementRef AXUIElementCreateApplication(pid_t pid) { return element(pid, "application"); }

AXUIElementRef AXUIElementCreateSystemWide() { return element(0, "everything"); }

AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid) {
  *pid = as<Element>(element)->pid;
  return kAXErrorSuccess;
}

AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds) {
  if (describe(element) != "everything of 0") noteMistake("a time-out for one element");
  application().timeoutSeconds = timeoutInSeconds;
  return kAXErrorSuccess;
}

AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef* value) {
  return read("read " + describe(attribute) + " of", element, value);
}

AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options,
                                               CFArrayRef* values) {
  if (options != 0) noteMistake("a read that stops at the first error");
  return read("read " + describe(attributes) + " of", element, values);
}

AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef* names) {
  return read("read actions of", element, names);
}

AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value) {
  return send("write " + describe(value) + " to " + describe(attribute) + " of", element);
}

Boolean AXIsProcessTrusted() { return application().trusted; }
