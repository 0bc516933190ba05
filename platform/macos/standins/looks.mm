// Colours, fonts, appearances, layers and pictures.
#include "platform/macos/standins/looks.h"

#import <QuartzCore/QuartzCore.h>

#include "platform/macos/standins/graphics.h"
#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/text.h"

using standins::foundationText;
using standins::plainText;

@interface NSColor ()
@property(strong) NSString* name;
@property CGFloat alpha;
@end

@implementation NSColor {
  CGColorRef _core;
}
+ (NSColor*)named:(const char*)name alpha:(CGFloat)alpha {
  NSColor* colour = [[NSColor alloc] init];
  colour.name = foundationText(name);
  colour.alpha = alpha;
  return colour;
}
+ (NSColor*)blackColor {
  return [NSColor named:"black" alpha:1];
}
+ (NSColor*)whiteColor {
  return [NSColor named:"white" alpha:1];
}
+ (NSColor*)clearColor {
  return [NSColor named:"clear" alpha:0];
}
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha {
  return [NSColor named:plainText(self.name).c_str() alpha:alpha];
}
- (NSString*)description {
  return foundationText(plainText(self.name) + " " + standins::text(self.alpha));
}
// Goes with the colour.
- (CGColorRef)CGColor {
  if (_core == nullptr) {
    _core = standins::colour(plainText(self.description));
  }
  return _core;
}
- (void)dealloc {
  if (_core != nullptr) CFRelease(_core);
}
@end

const NSFontWeight NSFontWeightMedium = 0.23;
const NSFontWeight NSFontWeightSemibold = 0.3;

@implementation NSFont
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight {
  NSFont* font = [[NSFont alloc] init];
  font.size = fontSize;
  font.weight = weight;
  return font;
}
@end

NSAppearanceName const NSAppearanceNameDarkAqua = (__bridge NSString*)CFSTR("dark aqua");

@implementation NSAppearance
+ (NSAppearance*)appearanceNamed:(NSAppearanceName)name {
  NSAppearance* appearance = [[NSAppearance alloc] init];
  appearance.name = name;
  return appearance;
}
@end

@implementation CALayer
@synthesize backgroundColor = _backgroundColor, borderColor = _borderColor;
- (void)setBackgroundColor:(CGColorRef)colour {
  if (_backgroundColor != nullptr) CFRelease(_backgroundColor);
  _backgroundColor = colour == nullptr ? nullptr : (CGColorRef)CFRetain(colour);
}
- (CGColorRef)backgroundColor {
  return _backgroundColor;
}
- (void)setBorderColor:(CGColorRef)colour {
  if (_borderColor != nullptr) CFRelease(_borderColor);
  _borderColor = colour == nullptr ? nullptr : (CGColorRef)CFRetain(colour);
}
- (CGColorRef)borderColor {
  return _borderColor;
}
- (void)dealloc {
  self.backgroundColor = nullptr;
  self.borderColor = nullptr;
}
@end

@implementation NSImage
- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size {
  self = [super init];
  self.picture = (CGImageRef)CFRetain(cgImage);
  self.size = size;
  return self;
}
- (CGImageRef)CGImageForProposedRect:(NSRect*)proposedDestRect
                             context:(NSGraphicsContext*)referenceContext
                               hints:(NSDictionary<NSString*, id>*)hints {
  standins::record("picture for " + standins::text(*proposedDestRect));
  return self.picture;
}
- (void)dealloc {
  if (self.picture != nullptr) CFRelease(self.picture);
}
@end
