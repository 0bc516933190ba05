#pragma once

/// Read before every Objective-C source. Off the Mac the compiler takes "@available" for true at
/// once. This has it ask +[NSString stringWithUTF8String:], as any "@(text)" does, which gives nil
/// for a release that the stand-ins' system has not reached.
#include <Foundation/Foundation.h>

@interface NSString (StandinAvailability)
+ (nullable instancetype)stringWithUTF8String:(nonnull const char*)text;
@end

inline const char* standinsReleaseAskedFor(const char* release) { return release; }

#define available(release, others) (standinsReleaseAskedFor(#release))
