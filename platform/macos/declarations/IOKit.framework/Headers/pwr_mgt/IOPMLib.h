#pragma once

#include <CoreFoundation/CoreFoundation.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

typedef int IOReturn;
#define kIOReturnSuccess 0

#define kIOPMAssertionTypePreventUserIdleDisplaySleep CFSTR("PreventUserIdleDisplaySleep")
typedef uint32_t IOPMAssertionID;
typedef uint32_t IOPMAssertionLevel;
enum {
  kIOPMAssertionLevelOn = 255,
};
IOReturn IOPMAssertionCreateWithName(CFStringRef _Null_unspecified AssertionType,
                                     IOPMAssertionLevel AssertionLevel,
                                     CFStringRef _Null_unspecified AssertionName,
                                     IOPMAssertionID* _Null_unspecified AssertionID);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
