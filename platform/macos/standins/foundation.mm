#include "platform/macos/standins/foundation.h"

#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/pools.h"
#include "platform/macos/standins/strings.h"
#include "platform/macos/standins/text.h"

namespace {

template <class Reference>
Reference core(id object) {
  return (__bridge Reference)object;
}

// Some of the objects at a time, as Foundation's collections do it.
NSUInteger enumerate(NSFastEnumerationState* state, id __unsafe_unretained* buffer, NSUInteger size,
                     const std::vector<CFTypeRef>& objects) {
  static unsigned long unchanged = 0;
  NSUInteger count = 0;
  while (count < size && state->state < objects.size()) {
    buffer[count++] = (__bridge id)objects[state->state++];
  }
  state->itemsPtr = buffer;
  state->mutationsPtr = &unchanged;
  return count;
}

}  // namespace

namespace standins {

void raise(const std::string& reason) {
  std::fprintf(stderr, "raised: %s\n", reason.c_str());
  std::abort();
}

}  // namespace standins

using standins::raise;

@implementation NSString
@end

@implementation NSArray
+ (instancetype)array {
  return (__bridge_transfer id)standins::array({});
}
- (id)objectAtIndexedSubscript:(NSUInteger)idx {
  const auto place = static_cast<CFIndex>(idx);
  if (place >= CFArrayGetCount(core<CFArrayRef>(self))) raise("beyond the array");
  return (__bridge id)CFArrayGetValueAtIndex(core<CFArrayRef>(self), place);
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len {
  std::vector<CFTypeRef> elements;
  for (CFIndex i = 0; i < CFArrayGetCount(core<CFArrayRef>(self)); ++i) {
    elements.push_back(CFArrayGetValueAtIndex(core<CFArrayRef>(self), i));
  }
  return enumerate(state, buffer, len, elements);
}
@end

@implementation NSMutableArray
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems {
  return (__bridge_transfer id)standins::array({});
}
- (void)addObject:(id)anObject {
  if (anObject == nil) raise("nil added to an array");
  standins::add(core<CFArrayRef>(self), core<CFTypeRef>(anObject));
}
@end

@implementation NSDictionary
- (id)objectForKeyedSubscript:(id)key {
  return (__bridge id)CFDictionaryGetValue(core<CFDictionaryRef>(self), core<CFTypeRef>(key));
}
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained[])buffer
                                    count:(NSUInteger)len {
  const auto keys = standins::keysOf(core<CFDictionaryRef>(self));
  return enumerate(state, buffer, len, {keys.begin(), keys.end()});
}
@end

@implementation NSMutableDictionary
+ (instancetype)dictionaryWithCapacity:(NSUInteger)numItems {
  return (__bridge_transfer id)standins::dictionary({});
}
- (void)setObject:(id)obj forKeyedSubscript:(id)key {
  if (key == nil) raise("a value without a key");
  if (obj == nil) raise("a value taken out, which is not played here");
  standins::set(core<CFDictionaryRef>(self), core<CFStringRef>(key), core<CFTypeRef>(obj));
}
@end

@implementation NSData
+ (instancetype)dataWithBytes:(const void*)bytes length:(NSUInteger)length {
  return (__bridge_transfer id)CFDataCreate(nullptr, static_cast<const UInt8*>(bytes),
                                            static_cast<CFIndex>(length));
}
- (NSUInteger)length {
  return static_cast<NSUInteger>(CFDataGetLength(core<CFDataRef>(self)));
}
// Null where there are none, in spite of its declaration.
- (const void*)bytes __attribute__((no_sanitize("nullability-return"))) {
  return self.length == 0 ? nullptr : CFDataGetBytePtr(core<CFDataRef>(self));
}
@end

@implementation NSNull
+ (NSNull*)null {
  return (__bridge_transfer NSNull*)standins::null();
}
@end

@implementation NSValue
@end

@implementation NSNumber
+ (NSNumber*)numberWithBool:(BOOL)value {
  return (__bridge NSNumber*)standins::boolean(value);
}
+ (NSNumber*)numberWithLongLong:(long long)value {
  return (__bridge_transfer NSNumber*)standins::number(static_cast<std::int64_t>(value));
}
+ (NSNumber*)numberWithDouble:(double)value {
  return (__bridge_transfer NSNumber*)standins::number(value);
}
@end

@interface NSError ()
@property(copy) NSString* text;
@end

@implementation NSError
- (NSString*)description {
  return self.text;
}
@end

@implementation NSURL {
  NSString* _path;
}
@synthesize path = _path;
+ (NSURL*)fileURLWithPath:(NSString*)path {
  if (path == nil) raise("the place of no file");
  NSURL* url = [[NSURL alloc] init];
  url->_path = path;
  return url;
}
@end

@interface StandinTeller : NSObject {
 @public
  std::function<void()> _tell;
}
@end
@implementation StandinTeller
- (void)dealloc {
  _tell();
}
@end

namespace standins {

NSError* errorSaying(std::string_view description) {
  if (description.empty()) return nil;
  NSError* error = [[NSError alloc] init];
  error.text = foundationText(description);
  return error;
}

void autoreleaseTelling(std::function<void()> tell) {
  StandinTeller* teller = [[StandinTeller alloc] init];
  teller->_tell = std::move(tell);
  // To the pool.
  __autoreleasing StandinTeller* left = teller;
  static_cast<void>(left);
}

}  // namespace standins
