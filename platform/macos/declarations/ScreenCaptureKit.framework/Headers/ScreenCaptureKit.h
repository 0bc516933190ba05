#pragma once

#include <CoreGraphics/CoreGraphics.h>
#include <CoreMedia/CoreMedia.h>
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
@property(nonatomic, assign) CMTime minimumFrameInterval;
@property(nonatomic, assign) NSInteger queueDepth;
@property(nonatomic, assign) BOOL capturesAudio
    __attribute__((availability(macos, introduced=13.0)));
@property(nonatomic, strong, nullable) NSString* streamName
    __attribute__((availability(macos, introduced=14.0)));
@property(nonatomic, assign) BOOL includeChildWindows
    __attribute__((availability(macos, introduced=14.2)));
@end

typedef enum SCStreamOutputType : NSInteger {
  SCStreamOutputTypeScreen = 0,
} SCStreamOutputType;

@class SCStream;

@protocol SCStreamDelegate <NSObject>
@optional
- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error;
@end

@protocol SCStreamOutput <NSObject>
@optional
- (void)stream:(SCStream*)stream
    didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer
                   ofType:(SCStreamOutputType)type;
@end

@interface SCStream : NSObject
- (instancetype)initWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)streamConfig
                      delegate:(nullable id<SCStreamDelegate>)delegate;
- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(nullable dispatch_queue_t)sampleHandlerQueue
                  error:(NSError* _Nullable* _Nullable)error;
- (void)updateContentFilter:(SCContentFilter*)contentFilter
          completionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)updateConfiguration:(SCStreamConfiguration*)streamConfig
          completionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)startCaptureWithCompletionHandler:
    (nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)stopCaptureWithCompletionHandler:
    (nullable void (^)(NSError* _Nullable error))completionHandler;
@end

__attribute__((availability(macos, introduced = 14.0)))
@interface SCScreenshotManager : NSObject
+ (void)captureImageWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)config
             completionHandler:(nullable void (^)(CGImageRef _Nullable sampleBuffer,
                                                  NSError* _Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
