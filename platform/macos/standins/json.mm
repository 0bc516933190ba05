// JSON, read and written by a library as Foundation does it.
#import <Foundation/Foundation.h>

#include <cmath>
#include <nlohmann/json.hpp>
#include <string>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"

namespace {

using standins::foundationText;
using standins::plainText;
using standins::raise;

constexpr int deepestNesting = 512;

// Doubles beyond it may stand for several whole numbers.
constexpr double largestExactWhole = 0x1p53;

CFTypeRef core(id object) { return (__bridge CFTypeRef)object; }

std::string writtenNumber(CFNumberRef number) {
  std::int64_t whole = 0;
  if (!CFNumberIsFloatType(number) && CFNumberGetValue(number, kCFNumberSInt64Type, &whole)) {
    return std::to_string(whole);
  }
  double real = 0;
  CFNumberGetValue(number, kCFNumberDoubleType, &real);
  if (!std::isfinite(real)) raise("a number that is not finite");
  if (real == 0) return std::signbit(real) ? "-0" : "0";
  const bool isWhole = std::trunc(real) == real && std::fabs(real) <= largestExactWhole;
  return isWhole ? std::to_string(static_cast<std::int64_t>(real)) : nlohmann::json(real).dump();
}

// A slash is escaped.
std::string writtenText(NSString* string) {
  std::string text;
  for (const char each : nlohmann::json(plainText(string)).dump()) {
    if (each == '/') text += '\\';
    text += each;
  }
  return text;
}

std::string written(id object);

std::string writtenList(NSArray<id>* list) {
  std::string text;
  for (id each in list) text += (text.empty() ? "" : ",") + written(each);
  return '[' + text + ']';
}

std::string writtenMap(NSDictionary<NSString*, id>* map) {
  std::string text;
  for (NSString* key in map) {
    text += (text.empty() ? "" : ",") + writtenText(key) + ':' + written(map[key]);
  }
  return '{' + text + '}';
}

std::string written(id object) {
  const CFTypeID type = CFGetTypeID(core(object));
  if (type == CFBooleanGetTypeID()) {
    return CFBooleanGetValue(static_cast<CFBooleanRef>(core(object))) ? "true" : "false";
  }
  if (type == CFNullGetTypeID()) return "null";
  if (type == CFStringGetTypeID()) return writtenText((NSString*)object);
  if (type == CFArrayGetTypeID()) return writtenList((NSArray<id>*)object);
  if (type == CFDictionaryGetTypeID()) return writtenMap((NSDictionary<NSString*, id>*)object);
  if (type != CFNumberGetTypeID()) raise("an object that JSON does not know");
  return writtenNumber(static_cast<CFNumberRef>(core(object)));
}

id read(const nlohmann::json& parsed);

id readList(const nlohmann::json& parsed) {
  NSMutableArray<id>* list = [NSMutableArray arrayWithCapacity:0];
  for (const auto& each : parsed) [list addObject:read(each)];
  return list;
}

id readMap(const nlohmann::json& parsed) {
  NSMutableDictionary<NSString*, id>* map = [NSMutableDictionary dictionaryWithCapacity:0];
  for (const auto& [key, each] : parsed.items()) map[foundationText(key)] = read(each);
  return map;
}

id read(const nlohmann::json& parsed) {
  if (parsed.is_boolean()) return [NSNumber numberWithBool:parsed.get<bool>()];
  if (parsed.is_number_unsigned()) {
    return (__bridge_transfer id)standins::number(parsed.get<std::uint64_t>());
  }
  if (parsed.is_number_integer()) return [NSNumber numberWithLongLong:parsed.get<long long>()];
  if (parsed.is_number()) return [NSNumber numberWithDouble:parsed.get<double>()];
  if (parsed.is_string()) return foundationText(parsed.get<std::string>());
  if (parsed.is_array()) return readList(parsed);
  if (parsed.is_object()) return readMap(parsed);
  return [NSNull null];
}

// Discarded when it is no JSON. What lies too deep is not even built.
nlohmann::json parse(const std::string& text) {
  bool isTooDeep = false;
  const auto isTaken = [&](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
    isTooDeep = isTooDeep || depth >= deepestNesting;
    return !isTooDeep;
  };
  nlohmann::json parsed = nlohmann::json::parse(text, isTaken, false);
  return isTooDeep ? nlohmann::json(nlohmann::json::value_t::discarded) : parsed;
}

}  // namespace

@implementation NSJSONSerialization

+ (NSData*)dataWithJSONObject:(id)obj
                      options:(NSJSONWritingOptions)opt
                        error:(NSError* __autoreleasing*)error {
  if (obj == nil) raise("nothing to write");
  if ((opt & NSJSONWritingSortedKeys) == 0) standins::noteMistake("keys in no order");
  const std::string text = written(obj);
  const bool isFragment = text[0] != '[' && text[0] != '{';
  if (isFragment && (opt & NSJSONWritingFragmentsAllowed) == 0) raise("neither list nor map");
  return [NSData dataWithBytes:text.data() length:text.size()];
}

+ (id)JSONObjectWithData:(NSData*)data
                 options:(NSJSONReadingOptions)opt
                   error:(NSError* __autoreleasing*)error {
  if (data == nil) raise("nothing to read");
  if (opt != 0) standins::noteMistake("options to read by");
  const std::string text =
      data.length == 0 ? "" : std::string(static_cast<const char*>(data.bytes), data.length);
  const nlohmann::json parsed = parse(text);
  if (!parsed.is_discarded() && parsed.is_structured()) return read(parsed);
  if (error != nullptr) *error = standins::errorSaying("no JSON");
  return nil;
}

@end
