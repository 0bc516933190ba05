#pragma once

/// What the adapters use of the runtime's own header, as it is on Apple silicon.
typedef bool BOOL;
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
typedef long NSInteger;
typedef unsigned long NSUInteger;

@class NSString;

@protocol NSObject
- (Class)class;
@property(readonly, copy) NSString* description;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject> {
  Class isa;
}
+ (instancetype)alloc;
+ (Class)class;
- (instancetype)init;
- (void)dealloc;
@end
