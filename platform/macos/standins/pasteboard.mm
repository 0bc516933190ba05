#include "platform/macos/standins/pasteboard.h"

#import <AppKit/AppKit.h>

#include <cctype>
#include <cstdio>
#include <cstring>

#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"

using standins::foundationText;
using standins::PasteboardFault;
using standins::plainText;

namespace {

std::string urlOfFile(const std::string& path) {
  std::string url = "file://";
  for (const char each : path) {
    const bool isPlain = std::isalnum(static_cast<unsigned char>(each)) != 0 ||
                         std::strchr("-._~!$&'()*+,;=:@/", each) != nullptr;
    char escaped[4] = {each};
    if (!isPlain)
      std::snprintf(escaped, sizeof escaped, "%%%02X", static_cast<unsigned char>(each));
    url += escaped;
  }
  return url;
}

}  // namespace

@interface NSPasteboardItem ()
@property(strong) NSMutableArray<NSString*>* order;
@property(strong) NSMutableDictionary<NSString*, NSData*>* data;
@end

@implementation NSPasteboardItem
- (instancetype)init {
  self = [super init];
  self.order = [NSMutableArray arrayWithCapacity:0];
  self.data = [NSMutableDictionary dictionaryWithCapacity:0];
  return self;
}
- (NSArray<NSPasteboardType>*)types {
  return self.order;
}
- (NSData*)dataForType:(NSPasteboardType)type {
  return self.data[type];
}
// Refuses a type that is no identifier.
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type {
  if (data == nil) standins::raise("no data for a type");
  if (plainText(type).find(' ') != std::string::npos) return NO;
  if (self.data[type] == nil) [self.order addObject:type];
  self.data[type] = data;
  return YES;
}
@end

@interface NSPasteboard () {
 @public
  PasteboardFault _fault;
}
@property(readwrite) NSInteger changeCount;
@property(strong) NSMutableArray<NSPasteboardItem*>* items;
// Whoever has cleared it last may write to it.
@property BOOL isOurs;
@end

@implementation NSPasteboard
// There as long as the books are open.
+ (NSPasteboard*)generalPasteboard {
  static __weak NSPasteboard* general = nil;
  NSPasteboard* current = general;
  if (current != nil) return current;
  NSPasteboard* made = [[NSPasteboard alloc] init];
  made.items = [NSMutableArray arrayWithCapacity:0];
  general = made;
  standins::keep((__bridge_retained CFTypeRef)made);
  return made;
}
- (NSArray<NSPasteboardItem*>*)pasteboardItems {
  return _fault == PasteboardFault::refusesToBeRead ? nil : self.items;
}
- (NSInteger)clearContents {
  self.items = [NSMutableArray arrayWithCapacity:0];
  self.isOurs = YES;
  return ++self.changeCount;
}
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>>*)objects {
  if (!self.isOurs || _fault == PasteboardFault::refusesToBeWritten) return NO;
  for (id each in objects) {
    NSPasteboardItem* item = each;
    if ([each class] == [NSURL class]) {
      const std::string url = urlOfFile(plainText(((NSURL*)each).path));
      item = [[NSPasteboardItem alloc] init];
      [item setData:[NSData dataWithBytes:url.data() length:url.size()]
            forType:foundationText("public.file-url")];
    }
    [self.items addObject:item];
  }
  return YES;
}
@end

namespace standins {

void setPasteboardFault(PasteboardFault fault) {
  @autoreleasepool {
    NSPasteboard.generalPasteboard->_fault = fault;
  }
}

void copyToPasteboard(const std::vector<std::vector<PasteboardEntry>>& items) {
  @autoreleasepool {
    NSPasteboard* pasteboard = NSPasteboard.generalPasteboard;
    [pasteboard clearContents];
    pasteboard.isOurs = NO;
    for (const auto& entries : items) {
      NSPasteboardItem* item = [[NSPasteboardItem alloc] init];
      for (const PasteboardEntry& entry : entries) {
        NSString* type = foundationText(entry.type);
        [item.order addObject:type];
        if (!entry.data) continue;
        item.data[type] = [NSData dataWithBytes:entry.data->data() length:entry.data->size()];
      }
      [pasteboard.items addObject:item];
    }
  }
}

}  // namespace standins
