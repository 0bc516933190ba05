#include "platform/macos/standins/objects.h"

#include <functional>
#include <memory>
#include <utility>

#include "platform/macos/standins/strings.h"

namespace standins {

namespace {

struct Books {
  std::vector<std::unique_ptr<Object>> objects;
  std::vector<CFTypeRef> kept;
  std::vector<std::string> mistakes;
  std::vector<std::string> calls;
};

Books& books() {
  static Books books;
  return books;
}

}  // namespace

void enter(Object* object) { books().objects.emplace_back(object); }

Object* checked(CFTypeRef reference) {
  auto* object = const_cast<Object*>(static_cast<const Object*>(reference));
  if (object->references <= 0) noteMistake("used after its release: " + object->describe());
  return object;
}

std::string describe(CFTypeRef reference) {
  if (reference == nullptr) return "null";
  if (isConstantString(reference)) return describeString(static_cast<CFStringRef>(reference));
  return checked(reference)->describe();
}

void noteMistake(std::string mistake) { books().mistakes.push_back(std::move(mistake)); }

void record(std::string call) { books().calls.push_back(std::move(call)); }

std::vector<std::string> takeCalls() { return std::exchange(books().calls, {}); }

void keep(CFTypeRef reference) { books().kept.push_back(reference); }

std::vector<std::string> closeBooks() {
  for (const CFTypeRef reference : std::exchange(books().kept, {})) CFRelease(reference);
  std::vector<std::string> mistakes = std::exchange(books().mistakes, {});
  for (const auto& object : books().objects) {
    if (object->references > 0) mistakes.push_back("never released: " + object->describe());
  }
  books().objects.clear();
  books().calls.clear();
  return mistakes;
}

}  // namespace standins

using standins::checked;
using standins::isConstantString;

CFTypeRef CFRetain(CFTypeRef cf) {
  if (!isConstantString(cf)) ++checked(cf)->references;
  return cf;
}

void CFRelease(CFTypeRef cf) {
  if (cf == nullptr) return standins::noteMistake("null released");
  if (isConstantString(cf)) return;
  standins::Object* object = checked(cf);
  if (--object->references > 0) return;
  for (const CFTypeRef owned : std::exchange(object->owned, {})) CFRelease(owned);
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
  return isConstantString(cf) ? CFStringGetTypeID() : static_cast<CFTypeID>(checked(cf)->type);
}

CFHashCode CFHash(CFTypeRef cf) { return std::hash<std::string>()(standins::describe(cf)); }

Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2) {
  return CFGetTypeID(cf1) == CFGetTypeID(cf2) && standins::describe(cf1) == standins::describe(cf2);
}
