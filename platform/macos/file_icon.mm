#import <AppKit/AppKit.h>

#include "platform/image.h"
#include "platform/macos/foundation_text.h"
#include "platform/macos/owned.h"

namespace image {

namespace {

// An icon comes in several sizes and says that it is 32 points wide. This asks for one that is
// sharp wherever it is drawn.
constexpr CGFloat iconSide = 512;

}  // namespace

std::optional<Image> fileIcon(const std::string& path) {
  @autoreleasepool {
    NSImage* icon = [NSWorkspace.sharedWorkspace iconForFile:macos::foundationString(path)];
    NSRect frame = {{0, 0}, {iconSide, iconSide}};
    CGImageRef picture = [icon CGImageForProposedRect:&frame context:nil hints:nil];
    if (picture == nullptr) return std::nullopt;
    return Image(macos::shared(macos::retained(picture)));
  }
}

}  // namespace image
