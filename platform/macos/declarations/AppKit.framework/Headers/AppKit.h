#pragma once

#include <ApplicationServices/ApplicationServices.h>
#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

typedef enum NSApplicationActivationPolicy : NSInteger {
  NSApplicationActivationPolicyRegular = 0,
  NSApplicationActivationPolicyAccessory = 1,
  NSApplicationActivationPolicyProhibited = 2,
} NSApplicationActivationPolicy;

@interface NSRunningApplication : NSObject
@property(readonly, getter=isTerminated) BOOL terminated;
@property(readonly, getter=isHidden) BOOL hidden;
@property(readonly, getter=isActive) BOOL active;
@property(readonly) NSApplicationActivationPolicy activationPolicy;
@property(nullable, readonly, copy) NSString* localizedName;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@property(nullable, readonly, copy) NSURL* bundleURL;
@property(readonly) pid_t processIdentifier;
- (BOOL)unhide;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:
    (NSString*)bundleIdentifier;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
@end

@class NSGraphicsContext;

@interface NSImage : NSObject <NSCopying>
- (instancetype)initWithCGImage:(CGImageRef)cgImage size:(NSSize)size;
- (nullable CGImageRef)CGImageForProposedRect:(nullable NSRect*)proposedDestRect
                                      context:(nullable NSGraphicsContext*)referenceContext
                                        hints:(nullable NSDictionary<NSString*, id>*)hints;
@end

@interface NSWorkspace : NSObject
@property(class, readonly, strong) NSWorkspace* sharedWorkspace;
@property(readonly, copy) NSArray<NSRunningApplication*>* runningApplications;
@property(nullable, readonly, strong) NSRunningApplication* frontmostApplication;
- (NSImage*)iconForFile:(NSString*)fullPath;
@end

// The application.
typedef enum NSApplicationTerminateReply : NSUInteger {
  NSTerminateCancel = 0,
  NSTerminateNow = 1,
} NSApplicationTerminateReply;

@interface NSResponder : NSObject
@end

@class NSApplication;

@class NSNotification;

@protocol NSApplicationDelegate <NSObject>
@optional
- (NSApplicationTerminateReply)applicationShouldTerminate:(NSApplication*)sender;
- (void)applicationDidChangeScreenParameters:(NSNotification*)notification;
@end

@interface NSApplication : NSResponder
@property(class, readonly, strong) NSApplication* sharedApplication;
@property(nullable, weak) id<NSApplicationDelegate> delegate;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)activationPolicy;
- (void)run;
@end

// The pasteboard.
typedef NSString* NSPasteboardType;

@protocol NSPasteboardWriting <NSObject>
@end

@interface NSURL (NSPasteboardSupport) <NSPasteboardWriting>
@end

@interface NSPasteboardItem : NSObject <NSPasteboardWriting>
@property(readonly, copy) NSArray<NSPasteboardType>* types;
- (nullable NSData*)dataForType:(NSPasteboardType)type;
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type;
@end

@interface NSPasteboard : NSObject
@property(class, readonly, strong) NSPasteboard* generalPasteboard;
@property(readonly) NSInteger changeCount;
@property(nullable, readonly, copy) NSArray<NSPasteboardItem*>* pasteboardItems;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray<id<NSPasteboardWriting>>*)objects;
@end

// Colours, fonts and appearances.
@interface NSColor : NSObject <NSCopying>
@property(class, strong, readonly) NSColor* blackColor;
@property(class, strong, readonly) NSColor* whiteColor;
@property(class, strong, readonly) NSColor* clearColor;
@property(readonly) CGColorRef CGColor __attribute__((objc_returns_inner_pointer));
- (NSColor*)colorWithAlphaComponent:(CGFloat)alpha;
@end

typedef CGFloat NSFontWeight;
#ifdef __cplusplus
extern "C" {
#endif
extern const NSFontWeight NSFontWeightMedium;
extern const NSFontWeight NSFontWeightSemibold;
#ifdef __cplusplus
}
#endif

@interface NSFont : NSObject <NSCopying>
+ (NSFont*)systemFontOfSize:(CGFloat)fontSize weight:(NSFontWeight)weight;
@end

typedef NSString* NSAppearanceName;
#ifdef __cplusplus
extern "C" {
#endif
extern NSAppearanceName const NSAppearanceNameDarkAqua;
#ifdef __cplusplus
}
#endif

@interface NSAppearance : NSObject
+ (nullable NSAppearance*)appearanceNamed:(NSAppearanceName)name;
@end

@protocol NSAppearanceCustomization <NSObject>
@property(nullable, strong) NSAppearance* appearance;
@end

// Views.
@class CALayer;

typedef NSUInteger NSAutoresizingMaskOptions;
enum : NSAutoresizingMaskOptions {
  NSViewWidthSizable = 2,
  NSViewHeightSizable = 16,
};

@interface NSView : NSResponder <NSAppearanceCustomization>
@property NSRect frame;
@property NSAutoresizingMaskOptions autoresizingMask;
@property BOOL wantsLayer;
@property(nullable, strong) CALayer* layer;
- (instancetype)initWithFrame:(NSRect)frameRect;
- (void)addSubview:(NSView*)view;
@end

typedef enum NSVisualEffectMaterial : NSInteger {
  NSVisualEffectMaterialFullScreenUI = 15,
} NSVisualEffectMaterial;
typedef enum NSVisualEffectBlendingMode : NSInteger {
  NSVisualEffectBlendingModeBehindWindow = 0,
} NSVisualEffectBlendingMode;
typedef enum NSVisualEffectState : NSInteger {
  NSVisualEffectStateActive = 1,
} NSVisualEffectState;

@interface NSVisualEffectView : NSView
@property NSVisualEffectMaterial material;
@property NSVisualEffectBlendingMode blendingMode;
@property NSVisualEffectState state;
@end

typedef enum NSTextAlignment : NSInteger {
  NSTextAlignmentCenter = 1,
} NSTextAlignment;

@interface NSControl : NSView
@property(nullable, copy) NSFont* font;
@property NSTextAlignment alignment;
@property(copy) NSString* stringValue;
- (void)sizeToFit;
@end

@interface NSTextField : NSControl
@property(nullable, copy) NSColor* textColor;
+ (instancetype)labelWithString:(NSString*)stringValue;
@end

typedef enum NSImageScaling : NSUInteger {
  NSImageScaleProportionallyUpOrDown = 3,
} NSImageScaling;

@interface NSImageView : NSControl
@property(nullable, strong) NSImage* image;
@property NSImageScaling imageScaling;
@end

// Screens, windows and panels.
@interface NSScreen : NSObject
@property(class, readonly, copy) NSArray<NSScreen*>* screens;
@property(readonly) NSRect frame;
@end

typedef NSUInteger NSWindowStyleMask;
enum : NSWindowStyleMask {
  NSWindowStyleMaskNonactivatingPanel = 1 << 7,
};
typedef enum NSBackingStoreType : NSUInteger {
  NSBackingStoreBuffered = 2,
} NSBackingStoreType;
typedef NSUInteger NSWindowCollectionBehavior;
enum : NSWindowCollectionBehavior {
  NSWindowCollectionBehaviorCanJoinAllSpaces = 1 << 0,
  NSWindowCollectionBehaviorStationary = 1 << 4,
  NSWindowCollectionBehaviorFullScreenAuxiliary = 1 << 8,
};
typedef NSInteger NSWindowLevel;

@interface NSWindow : NSResponder
@property NSWindowLevel level;
@property(getter=isOpaque) BOOL opaque;
@property(null_resettable, copy) NSColor* backgroundColor;
@property BOOL hasShadow;
@property BOOL ignoresMouseEvents;
@property BOOL hidesOnDeactivate;
@property BOOL canHide;
@property NSWindowCollectionBehavior collectionBehavior;
@property(nullable, strong) __kindof NSView* contentView;
@property(getter=isReleasedWhenClosed) BOOL releasedWhenClosed;
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag;
- (void)setFrame:(NSRect)frameRect display:(BOOL)flag;
- (void)orderFrontRegardless;
- (void)orderOut:(nullable id)sender;
@end

@interface NSPanel : NSWindow
@end

#pragma clang assume_nonnull end
