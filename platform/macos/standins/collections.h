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
/// The whole number 2 to the power of 63, one too large for a signed one of 64 bits.
CFNumberRef hugeNumber();
CFTypeRef null();
CFTypeRef attributedString();
CFArrayRef array(const std::vector<CFTypeRef>& elements);
CFDictionaryRef dictionary(const std::map<std::u16string, CFTypeRef>& entries);

/// New data, which can grow, and what is in it.
CFMutableDataRef data(std::string bytes);
std::string bytesOf(CFDataRef data);
void append(CFMutableDataRef data, const std::string& bytes);

/// A truth value, not counted.
CFTypeRef boolean(bool value);

}  // namespace standins
