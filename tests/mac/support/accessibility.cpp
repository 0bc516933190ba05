#include "support/accessibility.h"

#include "support/system.h"

namespace probe {

namespace {

constexpr CFIndex textBytesMax = 4096;

std::optional<std::string> textOf(CFTypeRef value) {
  if (value == nullptr || CFGetTypeID(value) != CFStringGetTypeID()) return std::nullopt;
  char text[textBytesMax];
  if (!CFStringGetCString(static_cast<CFStringRef>(value), text, sizeof text,
                          kCFStringEncodingUTF8))
    return std::nullopt;
  return text;
}

bool isText(AXUIElementRef element, const std::string& text) {
  return textAttribute(element, CFSTR("AXTitle")) == text ||
         textAttribute(element, CFSTR("AXValue")) == text;
}

}  // namespace

CFTypeRef copyAttribute(AXUIElementRef element, CFStringRef attribute) {
  CFTypeRef value = nullptr;
  AXUIElementCopyAttributeValue(element, attribute, &value);
  return value;
}

std::optional<std::string> textAttribute(AXUIElementRef element, CFStringRef attribute) {
  return textOf(copyAttribute(element, attribute));
}

std::vector<AXUIElementRef> listedElements(AXUIElementRef element, CFStringRef attribute) {
  std::vector<AXUIElementRef> elements;
  const auto list = static_cast<CFArrayRef>(copyAttribute(element, attribute));
  if (list == nullptr) return elements;
  for (CFIndex index = 0; index < CFArrayGetCount(list); ++index)
    elements.push_back(static_cast<AXUIElementRef>(CFArrayGetValueAtIndex(list, index)));
  return elements;
}

AXUIElementRef elementBelow(AXUIElementRef element, const std::string& role,
                            const std::string& text) {
  for (AXUIElementRef child : listedElements(element, CFSTR("AXChildren"))) {
    if (textAttribute(child, CFSTR("AXRole")) == role && (text.empty() || isText(child, text)))
      return child;
    AXUIElementRef found = elementBelow(child, role, text);
    if (found != nullptr) return found;
  }
  return nullptr;
}

AXUIElementRef elementAt(AXUIElementRef application, CGPoint point) {
  AXUIElementRef element = nullptr;
  const auto x = static_cast<float>(point.x);
  const auto y = static_cast<float>(point.y);
  AXUIElementCopyElementAtPosition(application, x, y, &element);
  return element;
}

std::optional<CGPoint> middleOf(AXUIElementRef element) {
  CGPoint origin{};
  CGSize size{};
  const auto position = static_cast<AXValueRef>(copyAttribute(element, CFSTR("AXPosition")));
  const auto extent = static_cast<AXValueRef>(copyAttribute(element, CFSTR("AXSize")));
  if (position == nullptr || extent == nullptr ||
      !AXValueGetValue(position, kAXValueTypeCGPoint, &origin) ||
      !AXValueGetValue(extent, kAXValueTypeCGSize, &size))
    return std::nullopt;
  return CGPoint{origin.x + size.width / 2, origin.y + size.height / 2};
}

std::uint32_t windowOf(AXUIElementRef element) {
  std::uint32_t number = 0;
  if (privateFunctions().windowOfElement(element, &number) == 0 && number != 0) return number;
  const auto window = static_cast<AXUIElementRef>(copyAttribute(element, CFSTR("AXWindow")));
  if (window == nullptr || privateFunctions().windowOfElement(window, &number) != 0) return 0;
  return number;
}

}  // namespace probe
