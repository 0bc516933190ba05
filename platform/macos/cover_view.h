#pragma once

#import <AppKit/AppKit.h>

#include <string>

#include "platform/cover.h"

namespace macos {

/// The views that a description of a cover stands for.
struct CoverView {
  NSView* root;
  NSArray<NSTextField*>* labels;  // in the description's order
};

CoverView makeCoverView(const cover::View& view);

/// A label with this text in this font, as large as AppKit makes it.
NSTextField* makeLabel(const std::string& text, const cover::Font& font);

inline NSRect rectangle(const platform::Rect& rect) {
  return {{rect.x, rect.y}, {rect.width, rect.height}};
}

/// Has all that was changed drawn now.
void drawAtOnce();

}  // namespace macos
