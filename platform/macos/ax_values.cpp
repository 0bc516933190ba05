#include "platform/macos/ax_values.h"

#include <ApplicationServices/ApplicationServices.h>

#include <utility>

#include "platform/macos/core_foundation.h"

namespace macos {

namespace {

// Applications nest arrays once or twice. What lies deeper is kept unread.
constexpr int deepestArray = 8;

ax::Value value(CFTypeRef object, int depth);

ax::Value opaque(CFTypeRef object) { return {ax::Opaque(shared(retained(object)))}; }

// The content of a boxed value, which is of this type.
template <class Content>
Content unboxed(AXValueRef box, AXValueType type) {
  Content content = {};
  AXValueGetValue(box, type, &content);
  return content;
}

ax::Value boxedValue(AXValueRef box) {
  switch (AXValueGetType(box)) {
    case kAXValueTypeCGPoint: {
      const auto point = unboxed<CGPoint>(box, kAXValueTypeCGPoint);
      return {platform::Point{point.x, point.y}};
    }
    case kAXValueTypeCGSize: {
      const auto size = unboxed<CGSize>(box, kAXValueTypeCGSize);
      return {platform::Size{size.width, size.height}};
    }
    case kAXValueTypeCGRect: {
      const auto [origin, size] = unboxed<CGRect>(box, kAXValueTypeCGRect);
      return {platform::Rect{origin.x, origin.y, size.width, size.height}};
    }
    case kAXValueTypeCFRange: {
      const auto range = unboxed<CFRange>(box, kAXValueTypeCFRange);
      return {ax::Range{range.location, range.length}};
    }
    default:
      return opaque(box);
  }
}

ax::Value numberValue(CFNumberRef number) {
  const std::optional<std::int64_t> whole =
      CFNumberIsFloatType(number) ? std::nullopt : wholeNumber(number);
  if (whole) return {*whole};
  return {real(number).value_or(0)};
}

ax::Value arrayValue(CFArrayRef array, int depth) {
  if (depth == deepestArray) return opaque(array);
  std::vector<ax::Value> values;
  const CFIndex count = CFArrayGetCount(array);
  values.reserve(static_cast<std::size_t>(count));
  for (CFIndex i = 0; i < count; ++i) {
    values.push_back(value(CFArrayGetValueAtIndex(array, i), depth + 1));
  }
  return {std::move(values)};
}

ax::Value value(CFTypeRef object, int depth) {
  const CFTypeID type = CFGetTypeID(object);
  if (type == CFStringGetTypeID()) return {utf8(static_cast<CFStringRef>(object))};
  if (type == AXUIElementGetTypeID()) return {ax::Element(shared(retained(object)))};
  if (type == CFArrayGetTypeID()) return arrayValue(static_cast<CFArrayRef>(object), depth);
  if (type == CFNumberGetTypeID()) return numberValue(static_cast<CFNumberRef>(object));
  if (type == AXValueGetTypeID()) return boxedValue(static_cast<AXValueRef>(object));
  if (type == CFBooleanGetTypeID()) {
    return {CFBooleanGetValue(static_cast<CFBooleanRef>(object)) != 0};
  }
  return opaque(object);
}

ax::Slot boxedSlot(AXValueRef box) {
  switch (AXValueGetType(box)) {
    case kAXValueTypeAXError: {
      const auto error = unboxed<AXError>(box, kAXValueTypeAXError);
      return {std::nullopt, static_cast<ax::Error>(error)};
    }
    case kAXValueTypeIllegal:
      return {};
    default:
      return {boxedValue(box)};
  }
}

template <class Content>
Owned<CFTypeRef> boxed(AXValueType type, const Content& content) {
  return Owned<CFTypeRef>(AXValueCreate(type, &content));
}

Owned<CFTypeRef> object(const platform::Point& point) {
  return boxed(kAXValueTypeCGPoint, CGPoint{point.x, point.y});
}

Owned<CFTypeRef> object(const platform::Size& size) {
  return boxed(kAXValueTypeCGSize, CGSize{size.width, size.height});
}

Owned<CFTypeRef> object(const platform::Rect& rect) {
  return boxed(kAXValueTypeCGRect, CGRect{{rect.x, rect.y}, {rect.width, rect.height}});
}

Owned<CFTypeRef> object(const ax::Range& range) {
  return boxed(kAXValueTypeCFRange, CFRange{range.location, range.length});
}

Owned<CFTypeRef> object(bool value) {
  return retained<CFTypeRef>(value ? kCFBooleanTrue : kCFBooleanFalse);
}

Owned<CFTypeRef> object(std::int64_t value) { return Owned<CFTypeRef>(number(value).release()); }

Owned<CFTypeRef> object(double value) { return Owned<CFTypeRef>(number(value).release()); }

Owned<CFTypeRef> object(const std::string& text) {
  return Owned<CFTypeRef>(string(text).release());
}

template <class Tag>
Owned<CFTypeRef> object(const platform::Handle<Tag>& handle) {
  return retained<CFTypeRef>(handle.get());
}

Owned<CFTypeRef> object(const std::vector<ax::Value>& values) {
  std::vector<Owned<CFTypeRef>> objects;
  std::vector<CFTypeRef> borrowed;
  for (const ax::Value& value : values) {
    objects.push_back(macos::object(value));
    if (!objects.back()) return {};
    borrowed.push_back(objects.back().get());
  }
  return Owned<CFTypeRef>(array(borrowed).release());
}

}  // namespace

ax::Slot slot(CFTypeRef object) {
  if (object == nullptr) return {};
  if (CFGetTypeID(object) == CFNullGetTypeID()) return {std::nullopt, ax::Error::noValue};
  const auto box = cast<AXValueRef>(object, AXValueGetTypeID());
  if (box != nullptr) return boxedSlot(box);
  return {value(object, 0)};
}

Owned<CFTypeRef> object(const ax::Value& value) {
  return std::visit([](const auto& content) { return object(content); }, value.data);
}

}  // namespace macos
