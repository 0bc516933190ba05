#include "platform/macos/cover_view.h"

#import <QuartzCore/QuartzCore.h>

#include "platform/macos/foundation_text.h"

namespace macos {

namespace {

constexpr CGFloat borderWidth = 2;
constexpr CGFloat borderAlpha = 0.85;

NSFontWeight weight(cover::Weight weight) {
  return weight == cover::Weight::semibold ? NSFontWeightSemibold : NSFontWeightMedium;
}

NSColor* white(CGFloat alpha) { return [NSColor.whiteColor colorWithAlphaComponent:alpha]; }

NSVisualEffectView* makeSurface(const NSRect& frame) {
  NSVisualEffectView* surface = [[NSVisualEffectView alloc] initWithFrame:frame];
  surface.material = NSVisualEffectMaterialFullScreenUI;
  surface.blendingMode = NSVisualEffectBlendingModeBehindWindow;
  surface.state = NSVisualEffectStateActive;
  surface.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
  return surface;
}

NSView* makeDimming(const NSRect& frame, CGFloat alpha) {
  NSView* dimming = [[NSView alloc] initWithFrame:frame];
  dimming.wantsLayer = YES;
  dimming.layer.backgroundColor = [NSColor.blackColor colorWithAlphaComponent:alpha].CGColor;
  dimming.autoresizingMask = NSViewWidthSizable | NSViewHeightSizable;
  return dimming;
}

void clipToCircle(NSView* view) {
  view.wantsLayer = YES;
  view.layer.cornerRadius = view.frame.size.width / 2;
  view.layer.masksToBounds = YES;
  view.layer.borderWidth = borderWidth;
  view.layer.borderColor = white(borderAlpha).CGColor;
}

NSImageView* makePicture(const cover::Picture& picture) {
  auto image = static_cast<CGImageRef>(picture.image.get());
  NSImageView* view = [[NSImageView alloc] initWithFrame:rectangle(picture.frame)];
  // A size of zero stands for the picture's own.
  view.image = [[NSImage alloc] initWithCGImage:image size:NSSize{0, 0}];
  view.imageScaling = NSImageScaleProportionallyUpOrDown;
  if (picture.isRound) clipToCircle(view);
  return view;
}

NSTextField* makeLine(const cover::Label& label) {
  NSTextField* view = makeLabel(label.text, label.font);
  view.textColor = white(label.alpha);
  view.frame = rectangle(label.frame);
  return view;
}

}  // namespace

NSTextField* makeLabel(const std::string& text, const cover::Font& font) {
  NSTextField* label = [NSTextField labelWithString:foundationString(text)];
  label.font = [NSFont systemFontOfSize:font.size weight:weight(font.weight)];
  label.alignment = NSTextAlignmentCenter;
  return label;
}

CoverView makeCoverView(const cover::View& view) {
  const NSRect frame = {{0, 0}, {view.size.width, view.size.height}};
  NSVisualEffectView* root = makeSurface(frame);
  [root addSubview:makeDimming(frame, view.dimmingAlpha)];
  for (const cover::Picture& picture : view.pictures) [root addSubview:makePicture(picture)];
  NSMutableArray<NSTextField*>* labels = [NSMutableArray arrayWithCapacity:view.labels.size()];
  for (const cover::Label& label : view.labels) {
    NSTextField* native = makeLine(label);
    [root addSubview:native];
    [labels addObject:native];
  }
  return {root, labels};
}

void drawAtOnce() { [CATransaction flush]; }

}  // namespace macos
