#include "platform/macos/standins/views.h"

#import <QuartzCore/QuartzCore.h>

#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/graphics.h"
#include "platform/macos/standins/looks.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"

using standins::plainText;

@implementation NSResponder
@end

@interface NSView ()
@property(strong) NSMutableArray<NSView*>* children;
@end
@implementation NSView
@synthesize appearance = _appearance, wantsLayer = _wantsLayer;
- (instancetype)initWithFrame:(NSRect)frameRect {
  self = [super init];
  self.frame = frameRect;
  self.children = [NSMutableArray arrayWithCapacity:0];
  return self;
}
- (BOOL)wantsLayer {
  return _wantsLayer;
}
- (void)setWantsLayer:(BOOL)wants {
  _wantsLayer = wants;
  self.layer = wants ? [[CALayer alloc] init] : nil;
}
- (void)addSubview:(NSView*)view {
  [self.children addObject:view];
}
@end

@implementation NSVisualEffectView
@end

@implementation NSControl
- (void)sizeToFit {
  NSRect frame = self.frame;
  frame.size = {CGFloat(plainText(self.stringValue).size()) * self.font.size, self.font.size};
  self.frame = frame;
}
@end

@implementation NSTextField
+ (instancetype)labelWithString:(NSString*)stringValue {
  NSTextField* field = [[NSTextField alloc] initWithFrame:NSRect{}];
  field.stringValue = stringValue;
  return field;
}
@end

@implementation NSImageView
@end

namespace standins {

std::string describe(NSView* view) {
  std::string result = text(view.frame);
  if (CALayer* layer = view.layer) {
    if (layer.backgroundColor != nullptr) {
      result += " on " + describe((CFTypeRef)layer.backgroundColor);
    }
    if (layer.masksToBounds) result += " clipped to " + text(layer.cornerRadius);
    if (layer.borderWidth > 0) {
      result += " border " + text(layer.borderWidth) + " " + describe((CFTypeRef)layer.borderColor);
    }
  }
  if (view.autoresizingMask != 0) result += " resized " + std::to_string(view.autoresizingMask);
  if ([view class] == [NSTextField class]) {
    auto* field = (NSTextField*)view;
    result += " \"" + plainText(field.stringValue) + "\" " + text(field.font.size) + "/" +
              text(field.font.weight) + " " + plainText(field.textColor.description) + " aligned " +
              std::to_string(field.alignment);
  }
  if ([view class] == [NSImageView class]) {
    auto* picture = (NSImageView*)view;
    result += " " + describe((CFTypeRef)picture.image.picture) + " scaled " +
              std::to_string(picture.imageScaling);
  }
  if ([view class] == [NSVisualEffectView class]) {
    auto* effect = (NSVisualEffectView*)view;
    result += " material " + std::to_string(effect.material) + " state " +
              std::to_string(effect.state) + " " + plainText(effect.appearance.name);
  }
  for (NSView* child in view.children) result += "\n  " + describe(child);
  return result;
}

}  // namespace standins
