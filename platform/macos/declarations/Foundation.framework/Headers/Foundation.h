#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <dispatch/dispatch.h>
#include <objc/NSObject.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

@protocol NSCopying
@end

typedef struct {
  unsigned long state;
  id __unsafe_unretained _Nullable* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])buffer
                                    count:(NSUInteger)len;
@end

@interface NSString : NSObject <NSCopying>
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSCopying, NSFastEnumeration>
- (ObjectType)objectAtIndexedSubscript:(NSUInteger)idx;
+ (instancetype)array;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)arrayWithCapacity:(NSUInteger)numItems;
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType>
    : NSObject <NSCopying, NSFastEnumeration>
- (nullable ObjectType)objectForKeyedSubscript:(KeyType)key;
@end

@interface NSMutableDictionary<KeyType, ObjectType> : NSDictionary <KeyType, ObjectType>
+ (instancetype)dictionaryWithCapacity:(NSUInteger)numItems;
- (void)setObject:(nullable ObjectType)obj forKeyedSubscript:(KeyType<NSCopying>)key;
@end

@interface NSData : NSObject <NSCopying>
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes __attribute__((objc_returns_inner_pointer));
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
@end

@interface NSNull : NSObject <NSCopying>
+ (NSNull*)null;
@end

@interface NSValue : NSObject <NSCopying>
@end

@interface NSNumber : NSValue
+ (NSNumber*)numberWithBool:(BOOL)value;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
@end

@interface NSError : NSObject <NSCopying>
@end

@interface NSURL : NSObject <NSCopying>
@property(nullable, readonly, copy) NSString* path;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@end

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;

typedef struct {
  NSInteger majorVersion;
  NSInteger minorVersion;
  NSInteger patchVersion;
} NSOperatingSystemVersion;
@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly) NSOperatingSystemVersion operatingSystemVersion;
@end

typedef NSUInteger NSJSONWritingOptions;
enum : NSUInteger {
  NSJSONWritingSortedKeys = 1UL << 1,
  NSJSONWritingFragmentsAllowed = 1UL << 2,
};
typedef NSUInteger NSJSONReadingOptions;
@interface NSJSONSerialization : NSObject
+ (nullable NSData*)dataWithJSONObject:(id)obj
                               options:(NSJSONWritingOptions)opt
                                 error:(NSError* _Nullable* _Nullable)error;
+ (nullable id)JSONObjectWithData:(NSData*)data
                          options:(NSJSONReadingOptions)opt
                            error:(NSError* _Nullable* _Nullable)error;
@end

@interface NSPersonNameComponents : NSObject <NSCopying>
@property(copy, nullable) NSString* givenName;
@end

@interface NSFormatter : NSObject <NSCopying>
@end

@interface NSPersonNameComponentsFormatter : NSFormatter
- (nullable NSPersonNameComponents*)personNameComponentsFromString:(NSString*)string;
@end

NSString* NSFullUserName(void);
NSString* NSUserName(void);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
