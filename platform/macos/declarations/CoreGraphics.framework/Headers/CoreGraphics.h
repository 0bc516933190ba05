#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <stdbool.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

// Colours.
typedef struct CGColor* CGColorRef;
CGColorRef CGColorCreateGenericGray(CGFloat gray, CGFloat alpha);

// Images.
typedef struct CGImage* CGImageRef;
typedef struct CGDataProvider* CGDataProviderRef;
CGDataProviderRef _Nullable CGImageGetDataProvider(CGImageRef _Nullable image);
CFDataRef _Nullable CGDataProviderCopyData(CGDataProviderRef _Nullable provider);

// Displays.
typedef uint32_t CGDirectDisplayID;
typedef struct CGDisplayMode* CGDisplayModeRef;
CGDirectDisplayID CGMainDisplayID(void);
CGDisplayModeRef _Nullable CGDisplayCopyDisplayMode(CGDirectDisplayID display);
size_t CGDisplayModeGetWidth(CGDisplayModeRef _Nullable mode);
size_t CGDisplayModeGetPixelWidth(CGDisplayModeRef _Nullable mode);

// Windows and the login session.
typedef uint32_t CGWindowID;
typedef uint32_t CGWindowListOption;
enum : uint32_t {
  kCGWindowListOptionOnScreenOnly = 1 << 0,
  kCGWindowListOptionIncludingWindow = 1 << 3,
  kCGWindowListExcludeDesktopElements = 1 << 4,
};
#define kCGNullWindowID ((CGWindowID)0)
extern const CFStringRef kCGWindowNumber;
extern const CFStringRef kCGWindowLayer;
extern const CFStringRef kCGWindowBounds;
extern const CFStringRef kCGWindowOwnerPID;
extern const CFStringRef kCGWindowName;
CFArrayRef _Nullable CGWindowListCopyWindowInfo(CGWindowListOption option,
                                                CGWindowID relativeToWindow);
CFDictionaryRef _Nullable CGSessionCopyCurrentDictionary(void);
bool CGPreflightScreenCaptureAccess(void);

// Events.
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef enum CGEventType : uint32_t {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventRightMouseDown = 3,
  kCGEventRightMouseUp = 4,
  kCGEventMouseMoved = 5,
  kCGEventScrollWheel = 22,
} CGEventType;
typedef enum CGEventField : uint32_t {
  kCGMouseEventNumber = 0,
  kCGMouseEventClickState = 1,
  kCGMouseEventButtonNumber = 3,
  kCGMouseEventSubtype = 7,
  kCGEventTargetUnixProcessID = 40,
  kCGEventSourceUserData = 42,
  kCGMouseEventWindowUnderMousePointer = 91,
  kCGMouseEventWindowUnderMousePointerThatCanHandleThisEvent = 92,
} CGEventField;
typedef uint64_t CGEventFlags;
typedef enum CGMouseButton : uint32_t {
  kCGMouseButtonLeft = 0,
  kCGMouseButtonRight = 1,
} CGMouseButton;
typedef enum CGScrollEventUnit : uint32_t {
  kCGScrollEventUnitLine = 1,
} CGScrollEventUnit;
typedef enum CGEventSourceStateID : int32_t {
  kCGEventSourceStateHIDSystemState = 1,
} CGEventSourceStateID;
CGEventSourceRef _Nullable CGEventSourceCreate(CGEventSourceStateID stateID);
CGEventRef _Nullable CGEventCreate(CGEventSourceRef _Nullable source);
CGEventRef _Nullable CGEventCreateMouseEvent(CGEventSourceRef _Nullable source,
                                             CGEventType mouseType, CGPoint mouseCursorPosition,
                                             CGMouseButton mouseButton);
CGEventRef _Nullable CGEventCreateScrollWheelEvent2(CGEventSourceRef _Nullable source,
                                                    CGScrollEventUnit units, uint32_t wheelCount,
                                                    int32_t wheel1, int32_t wheel2, int32_t wheel3);
CGPoint CGEventGetLocation(CGEventRef _Nullable event);
void CGEventSetLocation(CGEventRef _Nullable event, CGPoint location);
void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags);
void CGEventSetIntegerValueField(CGEventRef _Nullable event, CGEventField field, int64_t value);
void CGEventPostToPid(pid_t pid, CGEventRef _Nullable event);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
