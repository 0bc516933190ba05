#pragma once

#include <CoreGraphics/CoreGraphics.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

typedef struct CGImageSource* CGImageSourceRef;
CGImageSourceRef _Nullable CGImageSourceCreateWithData(CFDataRef data,
                                                       CFDictionaryRef _Nullable options);
CGImageRef _Nullable CGImageSourceCreateThumbnailAtIndex(CGImageSourceRef isrc, size_t index,
                                                         CFDictionaryRef _Nullable options);
extern const CFStringRef kCGImageSourceCreateThumbnailFromImageAlways;
extern const CFStringRef kCGImageSourceCreateThumbnailWithTransform;

typedef struct CGImageDestination* CGImageDestinationRef;
CGImageDestinationRef _Nullable CGImageDestinationCreateWithData(CFMutableDataRef data,
                                                                 CFStringRef type, size_t count,
                                                                 CFDictionaryRef _Nullable options);
void CGImageDestinationAddImage(CGImageDestinationRef idst, CGImageRef image,
                                CFDictionaryRef _Nullable properties);
bool CGImageDestinationFinalize(CGImageDestinationRef idst);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
