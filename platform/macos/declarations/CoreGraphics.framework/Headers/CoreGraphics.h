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
typedef int32_t CGWindowLevel;
CGWindowLevel CGShieldingWindowLevel(void);

// Events.
typedef struct __CGEvent* CGEventRef;
typedef struct __CGEventSource* CGEventSourceRef;
typedef enum CGEventType : uint32_t {
  kCGEventLeftMouseDown = 1,
  kCGEventLeftMouseUp = 2,
  kCGEventRightMouseDown = 3,
  kCGEventRightMouseUp = 4,
  kCGEventMouseMoved = 5,
  kCGEventLeftMouseDragged = 6,
  kCGEventRightMouseDragged = 7,
  kCGEventKeyDown = 10,
  kCGEventKeyUp = 11,
  kCGEventFlagsChanged = 12,
  kCGEventScrollWheel = 22,
  kCGEventOtherMouseDown = 25,
  kCGEventTapDisabledByTimeout = 0xFFFFFFFE,
  kCGEventTapDisabledByUserInput = 0xFFFFFFFF,
} CGEventType;
typedef enum CGEventField : uint32_t {
  kCGMouseEventNumber = 0,
  kCGMouseEventClickState = 1,
  kCGMouseEventButtonNumber = 3,
  kCGMouseEventDeltaX = 4,
  kCGMouseEventDeltaY = 5,
  kCGMouseEventSubtype = 7,
  kCGKeyboardEventKeycode = 9,
  kCGEventTargetUnixProcessID = 40,
  kCGEventSourceUserData = 42,
  kCGMouseEventWindowUnderMousePointer = 91,
  kCGMouseEventWindowUnderMousePointerThatCanHandleThisEvent = 92,
} CGEventField;
typedef uint64_t CGEventFlags;
enum : CGEventFlags {
  kCGEventFlagMaskShift = 0x00020000,
  kCGEventFlagMaskControl = 0x00040000,
  kCGEventFlagMaskAlternate = 0x00080000,
  kCGEventFlagMaskCommand = 0x00100000,
};
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
typedef uint16_t CGKeyCode;
CGEventRef _Nullable CGEventCreateKeyboardEvent(CGEventSourceRef _Nullable source,
                                                CGKeyCode virtualKey, bool keyDown);
CGEventRef _Nullable CGEventCreateScrollWheelEvent2(CGEventSourceRef _Nullable source,
                                                    CGScrollEventUnit units, uint32_t wheelCount,
                                                    int32_t wheel1, int32_t wheel2, int32_t wheel3);
CGPoint CGEventGetLocation(CGEventRef _Nullable event);
void CGEventSetLocation(CGEventRef _Nullable event, CGPoint location);
CGEventFlags CGEventGetFlags(CGEventRef _Nullable event);
void CGEventSetFlags(CGEventRef _Nullable event, CGEventFlags flags);
int64_t CGEventGetIntegerValueField(CGEventRef _Nullable event, CGEventField field);
void CGEventSetIntegerValueField(CGEventRef _Nullable event, CGEventField field, int64_t value);
void CGEventKeyboardSetUnicodeString(CGEventRef _Nullable event, UniCharCount stringLength,
                                     const UniChar* _Nullable unicodeString);
void CGEventPostToPid(pid_t pid, CGEventRef _Nullable event);
CFTimeInterval CGEventSourceSecondsSinceLastEventType(CGEventSourceStateID stateID,
                                                      CGEventType eventType);

// Event taps.
typedef enum CGEventTapLocation : uint32_t {
  kCGSessionEventTap = 1,
} CGEventTapLocation;
typedef enum CGEventTapPlacement : uint32_t {
  kCGHeadInsertEventTap = 0,
  kCGTailAppendEventTap = 1,
} CGEventTapPlacement;
typedef enum CGEventTapOptions : uint32_t {
  kCGEventTapOptionDefault = 0,
  kCGEventTapOptionListenOnly = 1,
} CGEventTapOptions;
typedef uint64_t CGEventMask;
#define CGEventMaskBit(eventType) ((CGEventMask)1 << (eventType))
typedef struct __CGEventTapProxy* CGEventTapProxy;
typedef CGEventRef _Nullable (*CGEventTapCallBack)(CGEventTapProxy proxy, CGEventType type,
                                                   CGEventRef event, void* _Nullable userInfo);
CFMachPortRef _Nullable CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place,
                                         CGEventTapOptions options, CGEventMask eventsOfInterest,
                                         CGEventTapCallBack callback, void* _Nullable userInfo);
void CGEventTapEnable(CFMachPortRef tap, bool enable);
bool CGEventTapIsEnabled(CFMachPortRef tap);
bool CGPreflightListenEventAccess(void);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
