#include "platform/macos/standins/counting.h"

#include <cstring>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/macos/standins/blocks.h"
#include "platform/macos/standins/strings.h"

namespace standins {

namespace {

struct WeakReferences {
  std::mutex access;
  std::map<Id*, Id> objects;
};

WeakReferences& weakReferences() {
  static auto& references = *new WeakReferences;
  return references;
}

// An exception leaves a pool without emptying it: what is in it stays until an outer one goes.
struct Pools {
  std::vector<Id> objects;
  std::vector<std::size_t> starts;
};

Pools& pools() {
  thread_local Pools pools;
  return pools;
}

std::mutex& properties() {
  static auto& access = *new std::mutex;
  return access;
}

// Neither made nor gone while the program runs.
bool isPermanent(Id object) {
  return isClass(object) || isUncountedBlock(object) || isConstantString(object);
}

// Nil for an object that is about to go.
Id retainUnlessGone(Id object) {
  if (object == nullptr || isPermanent(object)) return object;
  return placed(object)->references.addUnlessGone() ? object : nullptr;
}

}  // namespace

void clearWeakReferences(Id object) {
  const std::lock_guard lock(weakReferences().access);
  std::erase_if(weakReferences().objects, [&](const auto& entry) {
    if (entry.second != object) return false;
    *entry.first = nullptr;
    return true;
  });
}

bool closePools() {
  if (pools().starts.empty()) return false;
  objc_autoreleasePoolPop(reinterpret_cast<void*>(1));
  return true;
}

}  // namespace standins

using namespace standins;

extern "C" {

Id objc_retain(Id object) {
  if (object != nullptr && !isPermanent(object)) CFRetain(object);
  return object;
}

void objc_release(Id object) {
  if (object != nullptr && !isPermanent(object)) CFRelease(object);
}

Id objc_autorelease(Id object) {
  if (object == nullptr || isPermanent(object)) return object;
  if (pools().starts.empty()) noteMistake("no pool for " + describe(object));
  pools().objects.push_back(object);
  return object;
}

// A pool is known by its place among those of its thread, counted from 1.
void* objc_autoreleasePoolPush() {
  pools().starts.push_back(pools().objects.size());
  return reinterpret_cast<void*>(pools().starts.size());
}

void objc_autoreleasePoolPop(void* pool) {
  const auto place = reinterpret_cast<std::size_t>(pool) - 1;
  const std::size_t size = pools().starts.at(place);
  while (pools().objects.size() > size) {
    Id object = pools().objects.back();
    pools().objects.pop_back();
    objc_release(object);
  }
  pools().starts.resize(place);
}

Id objc_retainAutorelease(Id object) { return objc_autorelease(objc_retain(object)); }
Id objc_autoreleaseReturnValue(Id object) { return objc_autorelease(object); }
Id objc_retainAutoreleaseReturnValue(Id object) { return objc_retainAutorelease(object); }
Id objc_retainAutoreleasedReturnValue(Id object) { return objc_retain(object); }
Id objc_unsafeClaimAutoreleasedReturnValue(Id object) { return object; }

void objc_storeStrong(Id* place, Id object) {
  Id old = *place;
  objc_retain(object);
  *place = object;
  objc_release(old);
}

// Weak references.
Id objc_storeWeak(Id* place, Id object) {
  const std::lock_guard lock(weakReferences().access);
  weakReferences().objects.erase(place);
  *place = object;
  if (object != nullptr) weakReferences().objects[place] = object;
  return object;
}

Id objc_initWeak(Id* place, Id object) { return objc_storeWeak(place, object); }

void objc_destroyWeak(Id* place) { objc_storeWeak(place, nullptr); }

Id objc_loadWeakRetained(Id* place) {
  const std::lock_guard lock(weakReferences().access);
  return retainUnlessGone(*place);
}

// Properties. An atomic one is read and written as a whole.
Id objc_getProperty(Id self, Selector, std::ptrdiff_t offset, bool) {
  const std::lock_guard lock(properties());
  return objc_retainAutorelease(*reinterpret_cast<Id*>(static_cast<char*>(self) + offset));
}

void objc_setProperty_atomic(Id self, Selector, Id value, std::ptrdiff_t offset) {
  objc_retain(value);
  Id* place = reinterpret_cast<Id*>(static_cast<char*>(self) + offset);
  Id old = nullptr;
  {
    const std::lock_guard lock(properties());
    old = std::exchange(*place, value);
  }
  objc_release(old);
}

// What is copied here never changes, apart from blocks.
void objc_setProperty_atomic_copy(Id self, Selector selector, Id value, std::ptrdiff_t offset) {
  Id copy = value != nullptr && isBlock(value) ? objc_retainBlock(value) : objc_retain(value);
  objc_setProperty_atomic(self, selector, copy, offset);
  objc_release(copy);
}

void objc_copyStruct(void* to, const void* from, std::ptrdiff_t bytes, bool, bool) {
  const std::lock_guard lock(properties());
  std::memcpy(to, from, static_cast<std::size_t>(bytes));
}

void objc_enumerationMutation(Id object) {
  noteMistake("changed while it is gone through: " + describe(object));
}
}
