#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "platform/share.h"

namespace macos {

/// The content as the platform has it.
SCShareableContent* native(const share::Content& content);

/// The filter for this content. Throws PlatformError when it names what the content does not hold.
SCContentFilter* captureFilter(const share::Content& content, const share::Filter& filter);

/// The configuration, without a cursor.
SCStreamConfiguration* captureConfiguration(const share::Configuration& configuration);

}  // namespace macos
