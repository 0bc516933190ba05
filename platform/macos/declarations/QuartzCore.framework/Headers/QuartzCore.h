#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <objc/NSObject.h>

#pragma clang assume_nonnull begin

@interface CATransaction : NSObject
+ (void)flush;
@end

@interface CALayer : NSObject
@property BOOL masksToBounds;
@property(nullable) CGColorRef backgroundColor;
@property CGFloat cornerRadius;
@property CGFloat borderWidth;
@property(nullable) CGColorRef borderColor;
@end

#pragma clang assume_nonnull end
