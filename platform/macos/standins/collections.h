#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace standins {

/// New objects, each with one reference. A collection takes over the references put into it.
CFNumberRef number(std::int64_t value);
CFNumberRef number(double value);
/// A whole number that may be too large for a signed one of 64 bits, as 2 to the power of 63 is.
CFNumberRef number(std::uint64_t value);
CFNumberRef hugeNumber();
CFTypeRef null();
CFTypeRef attributedString();
CFArrayRef array(const std::vector<CFTypeRef>& elements);
CFDictionaryRef dictionary(const std::map<std::u16string, CFTypeRef>& entries);

/// Adds an object, which is retained, to a collection. A key that is there gets another value.
void add(CFArrayRef array, CFTypeRef element);
void set(CFDictionaryRef dictionary, CFStringRef key, CFTypeRef value);

/// The keys in their order, borrowed.
std::vector<CFStringRef> keysOf(CFDictionaryRef dictionary);

/// New data, which can grow, and what is in it.
CFMutableDataRef data(std::string bytes);
std::string bytesOf(CFDataRef data);
void append(CFMutableDataRef data, const std::string& bytes);

/// A truth value, not counted.
CFTypeRef boolean(bool value);

}  // namespace standins
