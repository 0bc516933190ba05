#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@interface SCRunningApplication : NSObject
@property(readonly) NSString* bundleIdentifier;
@property(readonly) NSString* applicationName;
@property(readonly) pid_t processID;
@end

@interface SCWindow : NSObject
@property(readonly) CGWindowID windowID;
@property(readonly) CGRect frame;
@property(readonly, nullable) NSString* title;
@property(readonly) NSInteger windowLayer;
@property(readonly, nullable) SCRunningApplication* owningApplication;
@end

@interface SCDisplay : NSObject
@property(readonly) CGDirectDisplayID displayID;
@property(readonly) CGRect frame;
@end

@interface SCShareableContent : NSObject
@property(readonly) NSArray<SCWindow*>* windows;
@property(readonly) NSArray<SCDisplay*>* displays;
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:(void (^)(SCShareableContent* _Nullable content,
                                                             NSError* _Nullable error))handler;
@end

@interface SCContentFilter : NSObject
- (instancetype)initWithDesktopIndependentWindow:(SCWindow*)window;
- (instancetype)initWithDisplay:(SCDisplay*)display excludingWindows:(NSArray<SCWindow*>*)excluded;
- (instancetype)initWithDisplay:(SCDisplay*)display
               includingWindows:(NSArray<SCWindow*>*)includedWindows;
@end

@interface SCStreamConfiguration : NSObject
@property(nonatomic, assign) size_t width;
@property(nonatomic, assign) size_t height;
@property(nonatomic, assign) BOOL showsCursor;
@property(nonatomic, assign) CGColorRef backgroundColor;
@property(nonatomic, assign) CGRect sourceRect;
@end

__attribute__((availability(macos, introduced = 14.0)))
@interface SCScreenshotManager : NSObject
+ (void)captureImageWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)config
             completionHandler:(nullable void (^)(CGImageRef _Nullable sampleBuffer,
                                                  NSError* _Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
