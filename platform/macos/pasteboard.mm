#include "platform/pasteboard.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_text.h"

namespace pasteboard {

namespace {

NSPasteboard* general() { return NSPasteboard.generalPasteboard; }

platform::Bytes bytes(NSData* data) { return {static_cast<const char*>(data.bytes), data.length}; }

Item item(NSPasteboardItem* native) {
  Item item;
  for (NSPasteboardType type in native.types) {
    NSData* data = [native dataForType:type];
    if (data != nil) item.push_back({macos::textOrEmpty(type), bytes(data)});
  }
  return item;
}

// Without the representations that the system refuses.
NSPasteboardItem* nativeItem(const Item& item) {
  NSPasteboardItem* native = [[NSPasteboardItem alloc] init];
  for (const Representation& representation : item) {
    const platform::Bytes& contents = representation.data;
    NSData* data = [NSData dataWithBytes:contents.data() length:contents.size()];
    NSPasteboardType type = macos::foundationString(representation.type);
    [native setData:data forType:type];
  }
  return native;
}

}  // namespace

std::optional<std::vector<Item>> items() {
  @autoreleasepool {
    NSArray<NSPasteboardItem*>* natives = general().pasteboardItems;
    if (natives == nil) return std::nullopt;
    std::vector<Item> items;
    for (NSPasteboardItem* each in natives) items.push_back(item(each));
    return items;
  }
}

std::int64_t changeCount() {
  @autoreleasepool {
    return general().changeCount;
  }
}

std::int64_t clear() {
  @autoreleasepool {
    return [general() clearContents];
  }
}

bool write(const std::vector<Item>& items) {
  @autoreleasepool {
    NSMutableArray<id<NSPasteboardWriting>>* objects =
        [NSMutableArray arrayWithCapacity:items.size()];
    for (const Item& each : items) {
      [objects addObject:nativeItem(each)];
    }
    return [general() writeObjects:objects];
  }
}

bool writeFiles(const std::vector<std::string>& paths) {
  @autoreleasepool {
    NSMutableArray<id<NSPasteboardWriting>>* objects =
        [NSMutableArray arrayWithCapacity:paths.size()];
    for (const std::string& path : paths) {
      [objects addObject:[NSURL fileURLWithPath:macos::foundationString(path)]];
    }
    return [general() writeObjects:objects];
  }
}

}  // namespace pasteboard
