#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/ImageIO.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

typedef enum AXError : SInt32 {
  kAXErrorSuccess = 0,
  kAXErrorFailure = -25200,
  kAXErrorIllegalArgument = -25201,
  kAXErrorInvalidUIElement = -25202,
  kAXErrorCannotComplete = -25204,
  kAXErrorAttributeUnsupported = -25205,
  kAXErrorActionUnsupported = -25206,
  kAXErrorNotImplemented = -25208,
  kAXErrorAPIDisabled = -25211,
  kAXErrorNoValue = -25212,
} AXError;

typedef const struct __AXValue* AXValueRef;
typedef enum AXValueType : UInt32 {
  kAXValueTypeIllegal = 0,
  kAXValueTypeCGPoint = 1,
  kAXValueTypeCGSize = 2,
  kAXValueTypeCGRect = 3,
  kAXValueTypeCFRange = 4,
  kAXValueTypeAXError = 5,
} AXValueType;
CFTypeID AXValueGetTypeID(void);
AXValueRef _Nullable AXValueCreate(AXValueType theType, const void* valuePtr);
AXValueType AXValueGetType(AXValueRef value);
Boolean AXValueGetValue(AXValueRef value, AXValueType theType, void* valuePtr);

typedef const struct __AXUIElement* AXUIElementRef;
typedef UInt32 AXCopyMultipleAttributeOptions;
CFTypeID AXUIElementGetTypeID(void);
AXUIElementRef AXUIElementCreateApplication(pid_t pid);
AXUIElementRef AXUIElementCreateSystemWide(void);
AXError AXUIElementGetPid(AXUIElementRef element, pid_t* pid);
AXError AXUIElementSetMessagingTimeout(AXUIElementRef element, float timeoutInSeconds);
AXError AXUIElementCopyAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                      CFTypeRef _Nullable* _Nonnull value);
AXError AXUIElementCopyMultipleAttributeValues(AXUIElementRef element, CFArrayRef attributes,
                                               AXCopyMultipleAttributeOptions options,
                                               CFArrayRef _Nullable* _Nonnull values);
AXError AXUIElementCopyActionNames(AXUIElementRef element, CFArrayRef _Nullable* _Nonnull names);
AXError AXUIElementCopyElementAtPosition(AXUIElementRef application, float x, float y,
                                         AXUIElementRef _Nullable* _Nonnull element);
AXError AXUIElementPerformAction(AXUIElementRef element, CFStringRef action);
AXError AXUIElementSetAttributeValue(AXUIElementRef element, CFStringRef attribute,
                                     CFTypeRef value);
Boolean AXIsProcessTrusted(void);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
