#include "platform/macos/standins/collections.h"

#include <utility>

#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/strings.h"

struct CFArrayCallBacks {};
struct CFDictionaryKeyCallBacks {};
struct CFDictionaryValueCallBacks {};

namespace standins {

namespace {

struct Array : Object {
  explicit Array(std::vector<CFTypeRef> elements) : Object(Type::array) {
    owned = std::move(elements);
  }
  std::string describe() const override {
    std::string text;
    for (const CFTypeRef element : owned) text += ' ' + standins::describe(element);
    return '[' + text + " ]";
  }
};

struct Dictionary : Object {
  struct Entry {
    CFStringRef key;
    CFTypeRef value;
  };
  explicit Dictionary(const std::map<std::u16string, CFTypeRef>& content)
      : Object(Type::dictionary) {
    for (const auto& [key, value] : content) insert(key, string(key), value);
  }
  // Another value of a key that is there: the old one stays owned until the dictionary goes.
  void insert(const std::u16string& units, CFStringRef key, CFTypeRef value) {
    entries[units] = {key, value};
    owned.push_back(key);
    owned.push_back(value);
  }
  std::string describe() const override { return "dictionary"; }
  std::map<std::u16string, Entry> entries;
};

struct Data : Object {
  explicit Data(std::string bytes) : Object(Type::data), bytes(std::move(bytes)) {}
  std::string describe() const override { return "data " + bytes; }
  std::string bytes;
};

// An object without content that the adapters look into.
struct Plain : Object {
  Plain(Type type, std::string name) : Object(type), name(std::move(name)) {}
  std::string describe() const override { return name; }
  std::string name;
};

}  // namespace

CFTypeRef null() { return entered(new Plain(Type::null, "nothing")); }

CFTypeRef attributedString() {
  return entered(new Plain(Type::attributedString, "attributed string"));
}

CFArrayRef array(const std::vector<CFTypeRef>& elements) {
  return reinterpret_cast<CFArrayRef>(entered(new Array(elements)));
}

CFDictionaryRef dictionary(const std::map<std::u16string, CFTypeRef>& entries) {
  return reinterpret_cast<CFDictionaryRef>(entered(new Dictionary(entries)));
}

CFMutableDataRef data(std::string bytes) {
  return reinterpret_cast<CFMutableDataRef>(entered(new Data(std::move(bytes))));
}

void add(CFArrayRef array, CFTypeRef element) {
  as<Array>(array)->owned.push_back(CFRetain(element));
}

void set(CFDictionaryRef dictionary, CFStringRef key, CFTypeRef value) {
  const std::u16string units = unitsOf(key);
  as<Dictionary>(dictionary)->insert(units, string(units), CFRetain(value));
}

std::vector<CFStringRef> keysOf(CFDictionaryRef dictionary) {
  std::vector<CFStringRef> keys;
  for (const auto& [units, entry] : as<Dictionary>(dictionary)->entries) keys.push_back(entry.key);
  return keys;
}

void append(CFMutableDataRef data, const std::string& bytes) { as<Data>(data)->bytes += bytes; }

std::string bytesOf(CFDataRef data) { return as<Data>(data)->bytes; }

}  // namespace standins

using namespace standins;

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFArrayCallBacks kCFTypeArrayCallBacks = {};
const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks = {};
const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks = {};

CFTypeID CFArrayGetTypeID() { return CFTypeID(Type::array); }
CFTypeID CFDictionaryGetTypeID() { return CFTypeID(Type::dictionary); }
CFTypeID CFNullGetTypeID() { return CFTypeID(Type::null); }

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex numValues,
                         const CFArrayCallBacks* callBacks) {
  if (callBacks != &kCFTypeArrayCallBacks) noteMistake("an array that does not retain");
  const std::vector<CFTypeRef> elements(values, values + numValues);
  for (const CFTypeRef element : elements) CFRetain(element);
  return array(elements);
}

CFIndex CFArrayGetCount(CFArrayRef theArray) { return CFIndex(as<Array>(theArray)->owned.size()); }

const void* CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx) {
  return as<Array>(theArray)->owned.at(std::size_t(idx));
}

CFDictionaryRef CFDictionaryCreate(CFAllocatorRef, const void** keys, const void** values,
                                   CFIndex numValues, const CFDictionaryKeyCallBacks* keyCallBacks,
                                   const CFDictionaryValueCallBacks* valueCallBacks) {
  if (keyCallBacks != &kCFTypeDictionaryKeyCallBacks ||
      valueCallBacks != &kCFTypeDictionaryValueCallBacks) {
    noteMistake("a dictionary that does not retain");
  }
  CFDictionaryRef made = dictionary({});
  for (CFIndex i = 0; i < numValues; ++i) set(made, static_cast<CFStringRef>(keys[i]), values[i]);
  return made;
}

const void* CFDictionaryGetValue(CFDictionaryRef theDict, const void* key) {
  const auto& entries = as<Dictionary>(theDict)->entries;
  const auto found = entries.find(unitsOf(static_cast<CFStringRef>(key)));
  return found == entries.end() ? nullptr : found->second.value;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  return data({reinterpret_cast<const char*>(bytes), std::size_t(length)});
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex capacity) {
  if (capacity != 0) noteMistake("data that cannot grow");
  return data("");
}

CFIndex CFDataGetLength(CFDataRef theData) { return CFIndex(as<Data>(theData)->bytes.size()); }

const UInt8* CFDataGetBytePtr(CFDataRef theData) {
  return reinterpret_cast<const UInt8*>(as<Data>(theData)->bytes.data());
}
