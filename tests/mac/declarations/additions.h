// What the probes use of the frameworks and the product does not, for the build elsewhere than on a
// Mac. Each is declared as Apple's documentation has it.
#pragma once

#pragma clang system_header

#include <ApplicationServices/ApplicationServices.h>

#ifdef __cplusplus
extern "C" {
#endif

// Core Graphics.
enum : uint32_t { kCGHIDEventTap = 0, kCGAnnotatedSessionEventTap = 2 };
enum : int32_t { kCGEventSourceStateCombinedSessionState = 0 };
void CGEventPost(CGEventTapLocation tap, CGEventRef event);
bool CGEventTapIsEnabled(CFMachPortRef tap);
bool CGPreflightPostEventAccess(void);
typedef int32_t CGError;
size_t CGImageGetHeight(CGImageRef image);
size_t CGImageGetWidth(CGImageRef image);
size_t CGDisplayModeGetHeight(CGDisplayModeRef mode);
CFArrayRef CGDisplayCopyAllDisplayModes(CGDirectDisplayID display, CFDictionaryRef options);
CGError CGDisplaySetDisplayMode(CGDirectDisplayID display, CGDisplayModeRef mode,
                                CFDictionaryRef options);
extern const CFStringRef kCGWindowOwnerName;
extern const CFStringRef kCGWindowIsOnscreen;

// Core Foundation.
typedef enum CFRunLoopRunResult : SInt32 { kCFRunLoopRunTimedOut = 3 } CFRunLoopRunResult;
extern const CFRunLoopMode kCFRunLoopDefaultMode;
CFRunLoopRunResult CFRunLoopRunInMode(CFRunLoopMode mode, CFTimeInterval seconds,
                                      Boolean returnAfterSourceHandled);
Boolean CFStringGetCString(CFStringRef theString, char* buffer, CFIndex bufferSize,
                           uint32_t encoding);
enum : uint32_t { kCFStringEncodingUTF8 = 0x08000100 };
CFTypeRef CFPreferencesCopyAppValue(CFStringRef key, CFStringRef applicationID);
extern const CFStringRef kCFPreferencesAnyApplication;
Boolean CFDictionaryGetValueIfPresent(CFDictionaryRef theDict, const void* key, const void** value);
void CFMachPortInvalidate(CFMachPortRef port);

#ifdef __cplusplus
}
#endif

#ifdef __OBJC__
#include <AppKit/AppKit.h>
#include <ScreenCaptureKit/ScreenCaptureKit.h>

#pragma clang assume_nonnull begin

@interface NSObject (ProbeAdditions)
@property(readonly) NSUInteger hash;
- (BOOL)isKindOfClass:(Class)kind;
- (BOOL)respondsToSelector:(SEL)selector;
@end

@interface NSString (ProbeAdditions)
@property(readonly) NSUInteger length;
@property(nullable, readonly) const char* UTF8String __attribute__((objc_returns_inner_pointer));
+ (nullable instancetype)stringWithUTF8String:(const char*)text;
- (nullable NSData*)dataUsingEncoding:(NSUInteger)encoding;
@end
enum : NSUInteger { NSUTF8StringEncoding = 4 };

@interface NSArray (ProbeAdditions)
@property(readonly) NSUInteger count;
+ (instancetype)arrayWithObjects:(const id _Nonnull __unsafe_unretained[_Nullable])objects
                           count:(NSUInteger)count;
@end

@interface NSDictionary (ProbeAdditions)
+ (instancetype)dictionaryWithObjects:(const id _Nonnull __unsafe_unretained[_Nullable])objects
                              forKeys:
                                  (const id<NSCopying> _Nonnull __unsafe_unretained[_Nullable])keys
                                count:(NSUInteger)count;
@end

@interface NSNumber (ProbeAdditions)
+ (NSNumber*)numberWithInt:(int)value;
+ (NSNumber*)numberWithFloat:(float)value;
@end

@interface NSError (ProbeAdditions)
@property(readonly) NSInteger code;
@end

@interface NSProcessInfo (ProbeAdditions)
@property(readonly, copy) NSArray<NSString*>* arguments;
@end

typedef NSUInteger NSEventModifierFlags;
@interface NSEvent : NSObject
@property(readonly) NSUInteger type;
@property(readonly) short subtype;
@property(readonly) NSInteger windowNumber;
@property(readonly) NSPoint locationInWindow;
@property(readonly) NSEventModifierFlags modifierFlags;
@property(readonly) NSInteger clickCount;
@property(readonly) unsigned short keyCode;
@property(nullable, readonly, copy) NSString* characters;
@property(nullable, readonly) CGEventRef CGEvent __attribute__((objc_returns_inner_pointer));
@end

extern "C" NSApplication* _Null_unspecified NSApp;
@interface NSApplication (ProbeAdditions)
@property(readonly, getter=isActive) BOOL active;
@property(nullable, readonly, weak) NSWindow* keyWindow;
- (void)sendEvent:(NSEvent*)event;
- (void)activateIgnoringOtherApps:(BOOL)flag;
- (void)hide:(nullable id)sender;
- (void)finishLaunching;
@end

@interface NSResponder (ProbeAdditions)
- (void)mouseDown:(NSEvent*)event;
- (void)keyDown:(NSEvent*)event;
@property(readonly) BOOL acceptsFirstResponder;
@end

@interface NSControl (ProbeAdditions)
@property(getter=isEnabled) BOOL enabled;
@end

@interface NSButton : NSControl
+ (instancetype)buttonWithTitle:(NSString*)title
                         target:(nullable id)target
                         action:(nullable SEL)action;
@end

@interface NSSecureTextField : NSTextField
@end

@interface NSView (ProbeAdditions)
@property(getter=isHidden) BOOL hidden;
- (BOOL)acceptsFirstMouse:(nullable NSEvent*)event;
@end

enum : NSWindowStyleMask {
  NSWindowStyleMaskBorderless = 0,
  NSWindowStyleMaskTitled = 1 << 0,
  NSWindowStyleMaskMiniaturizable = 1 << 2,
  NSWindowStyleMaskResizable = 1 << 3,
};
enum : NSWindowCollectionBehavior { NSWindowCollectionBehaviorFullScreenPrimary = 1 << 7 };
typedef NSInteger NSWindowOrderingMode;
enum : NSWindowOrderingMode { NSWindowAbove = 1 };
@interface NSWindow (ProbeAdditions)
@property(readonly) NSInteger windowNumber;
@property(readonly) NSRect frame;
@property(copy) NSString* title;
- (void)setFrameOrigin:(NSPoint)point;
- (void)close;
- (BOOL)makeFirstResponder:(nullable NSResponder*)responder;
- (void)makeKeyAndOrderFront:(nullable id)sender;
- (void)addChildWindow:(NSWindow*)child ordered:(NSWindowOrderingMode)place;
- (void)toggleFullScreen:(nullable id)sender;
@end

typedef NSInteger NSScrollerStyle;
enum : NSScrollerStyle { NSScrollerStyleLegacy = 0 };
@interface NSScrollView : NSView
@property NSScrollerStyle scrollerStyle;
@property BOOL hasVerticalScroller;
@property(nullable, strong) __kindof NSView* documentView;
@end

@interface NSOpenPanel : NSPanel
+ (NSOpenPanel*)openPanel;
- (void)beginWithCompletionHandler:(void (^)(NSInteger result))handler;
- (void)cancel:(nullable id)sender;
@end

@interface NSPasteboard (ProbeAdditions)
+ (NSPasteboard*)pasteboardWithUniqueName;
- (void)releaseGlobally;
- (BOOL)setString:(NSString*)text forType:(NSPasteboardType)type;
@end
extern "C" NSPasteboardType const NSPasteboardTypeString;

@protocol NSPasteboardItemDataProvider <NSObject>
- (void)pasteboard:(nullable NSPasteboard*)pasteboard
                  item:(NSPasteboardItem*)item
    provideDataForType:(NSPasteboardType)type;
@end
@interface NSPasteboardItem (ProbeAdditions)
- (BOOL)setDataProvider:(id<NSPasteboardItemDataProvider>)dataProvider
               forTypes:(NSArray<NSPasteboardType>*)types;
@end

@interface NSRunningApplication (ProbeAdditions)
- (BOOL)hide;
- (BOOL)terminate;
@end

@interface SCStream (ProbeAdditions)
@end

#pragma clang assume_nonnull end
#endif
