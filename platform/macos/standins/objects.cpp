#include "platform/macos/standins/objects.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <mutex>
#include <utility>

#include "platform/macos/standins/counting.h"
#include "platform/macos/standins/instances.h"
#include "platform/macos/standins/strings.h"
#include "platform/macos/standins/unobserved.h"

namespace standins {

namespace {

struct Books {
  std::mutex access;
  std::vector<std::unique_ptr<Object>> objects;
  std::vector<std::unique_ptr<Object>> keptForEver;
  std::vector<CFTypeRef> kept;
  std::vector<std::string> mistakes;
  std::vector<std::string> calls;
};

// Never destroyed: threads may end after the program's last statement.
Books& books() {
  static auto& books = *new Books;
  return books;
}

// The books order nothing that the adapters do: who checks for races does not see their lock.
class Entry {
 public:
  Entry() { books().access.lock(); }
  ~Entry() { books().access.unlock(); }
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;

 private:
  Unobserved unobserved_;
};

}  // namespace

void enter(Object* object) {
  const Entry entry;
  books().objects.emplace_back(object);
}

Object* checked(CFTypeRef reference) {
  auto* object = isPlaced(reference) ? placed(reference)
                                     : const_cast<Object*>(static_cast<const Object*>(reference));
  if (object->references.count() <= 0) noteMistake("used after its release: " + object->describe());
  return object;
}

std::string describe(CFTypeRef reference) {
  if (reference == nullptr) return "null";
  if (isConstantString(reference)) return describeString(static_cast<CFStringRef>(reference));
  return checked(reference)->describe();
}

void noteMistake(std::string mistake) {
  const Entry entry;
  books().mistakes.push_back(std::move(mistake));
}

void record(std::string call) {
  const Entry entry;
  books().calls.push_back(std::move(call));
}

std::vector<std::string> takeCalls() {
  const Entry entry;
  return std::exchange(books().calls, {});
}

void keep(CFTypeRef reference) {
  const Entry entry;
  books().kept.push_back(reference);
}

void keepForEver(CFTypeRef reference) {
  const Object* object = checked(reference);
  const Entry entry;
  auto& objects = books().objects;
  const auto found = std::find_if(objects.begin(), objects.end(),
                                  [&](const auto& each) { return each.get() == object; });
  if (found == objects.end()) return;  // it is already
  books().keptForEver.push_back(std::move(*found));
  objects.erase(found);
}

std::vector<std::string> closeBooks() {
  for (const CFTypeRef reference : std::exchange(books().kept, {})) CFRelease(reference);
  if (closePools()) noteMistake("a pool was left open");
  std::vector<std::string> mistakes = std::exchange(books().mistakes, {});
  for (const auto& object : books().objects) {
    if (object->references.count() > 0) mistakes.push_back("never released: " + object->describe());
  }
  books().objects.clear();
  books().calls.clear();
  return mistakes;
}

}  // namespace standins

using standins::checked;
using standins::isConstantString;

CFTypeRef CFRetain(CFTypeRef cf) {
  if (!isConstantString(cf)) checked(cf)->references.add();
  return cf;
}

void CFRelease(CFTypeRef cf) {
  if (cf == nullptr) return standins::noteMistake("null released");
  if (isConstantString(cf)) return;
  standins::Object* object = checked(cf);
  if (!object->references.drop()) return;
  object->end();
  for (const CFTypeRef owned : std::exchange(object->owned, {})) CFRelease(owned);
}

CFTypeID CFGetTypeID(CFTypeRef cf) {
  return isConstantString(cf) ? CFStringGetTypeID() : static_cast<CFTypeID>(checked(cf)->type);
}

CFHashCode CFHash(CFTypeRef cf) { return std::hash<std::string>()(standins::describe(cf)); }

Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2) {
  return CFGetTypeID(cf1) == CFGetTypeID(cf2) && standins::describe(cf1) == standins::describe(cf2);
}
