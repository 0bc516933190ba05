#include "platform/json.h"

#import <Foundation/Foundation.h>

#include <cstdlib>
#include <variant>

#include "platform/macos/foundation_text.h"
#include "platform/types.h"

namespace json {

namespace {

using driver::Value;

id object(const Value& value);

id object(std::monostate) { return [NSNull null]; }
id object(bool value) { return [NSNumber numberWithBool:value]; }
id object(std::int64_t value) { return [NSNumber numberWithLongLong:value]; }
// Without its sign where it is zero, which would be written as "-0".
id object(double value) { return [NSNumber numberWithDouble:value == 0 ? 0 : value]; }
id object(const std::string& text) { return macos::foundationString(text); }

id object(const Value::List& values) {
  NSMutableArray<id>* array = [NSMutableArray arrayWithCapacity:values.size()];
  for (const Value& value : values) [array addObject:object(value)];
  return array;
}

id object(const Value::Object& values) {
  NSMutableDictionary<NSString*, id>* dictionary =
      [NSMutableDictionary dictionaryWithCapacity:values.size()];
  for (const auto& [key, value] : values) {
    dictionary[macos::foundationString(key)] = object(value);
  }
  return dictionary;
}

Value value(id object);

Value listOf(NSArray<id>* array) {
  Value::List values;
  for (id item in array) values.push_back(value(item));
  return values;
}

Value objectOf(NSDictionary<NSString*, id>* dictionary) {
  Value::Object values;
  for (NSString* key in dictionary) values.emplace(macos::textOrEmpty(key), value(dictionary[key]));
  return values;
}

// Foundation's objects are Core Foundation's.
Value value(id object) {
  CFTypeRef content = (__bridge CFTypeRef)object;
  const CFTypeID type = CFGetTypeID(content);
  if (type == CFBooleanGetTypeID()) return *macos::boolean(content);
  if (type == CFStringGetTypeID()) return *macos::text(content);
  if (type == CFArrayGetTypeID()) return listOf((NSArray<id>*)object);
  if (type == CFDictionaryGetTypeID()) return objectOf((NSDictionary<NSString*, id>*)object);
  if (type != CFNumberGetTypeID()) return {};
  const bool isWhole = !CFNumberIsFloatType(static_cast<CFNumberRef>(content));
  if (const auto whole = macos::wholeNumber(content); isWhole && whole) return *whole;
  return macos::real(content).value_or(0);
}

id object(const Value& value) {
  return value.visit([](const auto& content) { return object(content); });
}

// An object or an array; nil, with an error, for anything else.
id parsed(std::string_view text, NSError** error) {
  NSData* data = [NSData dataWithBytes:text.data() length:text.size()];
  return [NSJSONSerialization JSONObjectWithData:data options:0 error:error];
}

}  // namespace

std::string write(const Value& value) {
  @autoreleasepool {
    // A value that cannot be written raises, which nobody catches.
    NSData* data = [NSJSONSerialization
        dataWithJSONObject:object(value)
                   options:NSJSONWritingSortedKeys | NSJSONWritingFragmentsAllowed
                     error:nil];
    if (data == nil) std::abort();
    return {static_cast<const char*>(data.bytes), data.length};
  }
}

std::optional<Value> parse(std::string_view text) {
  @autoreleasepool {
    id content = parsed(text, nil);
    if (content == nil) return std::nullopt;
    return value(content);
  }
}

Value parseOrThrow(std::string_view text) {
  @autoreleasepool {
    NSError* error = nil;
    id content = parsed(text, &error);
    if (content == nil) throw platform::PlatformError(macos::textOrEmpty(error.description));
    return value(content);
  }
}

}  // namespace json
