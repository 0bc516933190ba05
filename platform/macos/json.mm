#include "platform/json.h"

#import <Foundation/Foundation.h>

#include <cstdlib>
#include <variant>

#include "platform/macos/foundation_text.h"

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

id object(const Value& value) {
  return value.visit([](const auto& content) { return object(content); });
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

}  // namespace json
