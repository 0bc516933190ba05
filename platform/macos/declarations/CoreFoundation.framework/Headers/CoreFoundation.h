#pragma once

#include <stddef.h>
#include <stdint.h>
#include <sys/types.h>

#if __has_include(<MacTypes.h>)
#include <MacTypes.h>
#else
typedef unsigned char Boolean;
typedef uint8_t UInt8;
typedef uint16_t UniChar;
typedef unsigned long UniCharCount;
typedef uint32_t UInt32;
typedef int32_t SInt32;
#endif

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

typedef double CGFloat;
typedef struct CGPoint {
  CGFloat x;
  CGFloat y;
} CGPoint;
typedef struct CGSize {
  CGFloat width;
  CGFloat height;
} CGSize;
typedef struct CGRect {
  CGPoint origin;
  CGSize size;
} CGRect;

typedef const void* CFTypeRef;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned long CFHashCode;
typedef double CFTimeInterval;
typedef struct {
  CFIndex location;
  CFIndex length;
} CFRange;

typedef const struct __CFAllocator* CFAllocatorRef;
typedef const struct __CFArray* CFArrayRef;
typedef const struct __CFBoolean* CFBooleanRef;
typedef const struct __CFData* CFDataRef;
typedef struct __CFData* CFMutableDataRef;
typedef const struct __CFDictionary* CFDictionaryRef;
typedef const struct __CFLocale* CFLocaleRef;
typedef struct __CFMachPort* CFMachPortRef;
typedef const struct __CFNumber* CFNumberRef;
typedef struct __CFRunLoop* CFRunLoopRef;
typedef struct __CFRunLoopSource* CFRunLoopSourceRef;
typedef const struct __CFString* CFStringRef;
typedef struct __CFString* CFMutableStringRef;

extern const CFAllocatorRef _Null_unspecified kCFAllocatorDefault;

CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);
Boolean CFEqual(CFTypeRef cf1, CFTypeRef cf2);
CFHashCode CFHash(CFTypeRef cf);
CFTypeID CFGetTypeID(CFTypeRef cf);

typedef struct CFArrayCallBacks CFArrayCallBacks;
extern const CFArrayCallBacks kCFTypeArrayCallBacks;
CFTypeID CFArrayGetTypeID(void);
CFArrayRef _Null_unspecified CFArrayCreate(CFAllocatorRef _Nullable allocator,
                                           const void* _Nonnull* _Nullable values,
                                           CFIndex numValues,
                                           const CFArrayCallBacks* _Nullable callBacks);
CFIndex CFArrayGetCount(CFArrayRef theArray);
const void* _Null_unspecified CFArrayGetValueAtIndex(CFArrayRef theArray, CFIndex idx);

extern const CFBooleanRef kCFBooleanTrue;
extern const CFBooleanRef kCFBooleanFalse;
CFTypeID CFBooleanGetTypeID(void);
Boolean CFBooleanGetValue(CFBooleanRef boolean);

CFDataRef _Null_unspecified CFDataCreate(CFAllocatorRef _Nullable allocator,
                                         const UInt8* _Nullable bytes, CFIndex length);
CFMutableDataRef _Null_unspecified CFDataCreateMutable(CFAllocatorRef _Nullable allocator,
                                                       CFIndex capacity);
CFIndex CFDataGetLength(CFDataRef theData);
const UInt8* _Null_unspecified CFDataGetBytePtr(CFDataRef theData);

typedef struct CFDictionaryKeyCallBacks CFDictionaryKeyCallBacks;
typedef struct CFDictionaryValueCallBacks CFDictionaryValueCallBacks;
extern const CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks;
extern const CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks;
CFTypeID CFDictionaryGetTypeID(void);
CFDictionaryRef _Null_unspecified CFDictionaryCreate(
    CFAllocatorRef _Nullable allocator, const void* _Nonnull* _Nullable keys,
    const void* _Nonnull* _Nullable values, CFIndex numValues,
    const CFDictionaryKeyCallBacks* _Nullable keyCallBacks,
    const CFDictionaryValueCallBacks* _Nullable valueCallBacks);
const void* _Nullable CFDictionaryGetValue(CFDictionaryRef theDict, const void* key);

CFArrayRef _Null_unspecified CFLocaleCopyPreferredLanguages(void);

CFRunLoopSourceRef _Null_unspecified CFMachPortCreateRunLoopSource(
    CFAllocatorRef _Nullable allocator, CFMachPortRef _Null_unspecified port, CFIndex order);
void CFMachPortInvalidate(CFMachPortRef _Null_unspecified port);
Boolean CFMachPortIsValid(CFMachPortRef _Null_unspecified port);

CFTypeID CFNullGetTypeID(void);

typedef enum CFNumberType : CFIndex {
  kCFNumberSInt64Type = 4,
  kCFNumberDoubleType = 13,
} CFNumberType;
CFTypeID CFNumberGetTypeID(void);
CFNumberRef _Null_unspecified CFNumberCreate(CFAllocatorRef _Nullable allocator,
                                             CFNumberType theType, const void* valuePtr);
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr);
Boolean CFNumberIsFloatType(CFNumberRef number);

#define CFSTR(text) ((CFStringRef)__builtin___CFStringMakeConstantString(text))
typedef enum CFStringNormalizationForm : CFIndex {
  kCFStringNormalizationFormD = 0,
  kCFStringNormalizationFormC = 2,
} CFStringNormalizationForm;
CFTypeID CFStringGetTypeID(void);
CFStringRef _Null_unspecified CFStringCreateWithCharacters(CFAllocatorRef _Nullable alloc,
                                                           const UniChar* _Nullable chars,
                                                           CFIndex numChars);
CFMutableStringRef _Null_unspecified CFStringCreateMutableCopy(CFAllocatorRef _Nullable alloc,
                                                               CFIndex maxLength,
                                                               CFStringRef theString);
CFIndex CFStringGetLength(CFStringRef theString);
void CFStringGetCharacters(CFStringRef theString, CFRange range, UniChar* buffer);
CFRange CFStringGetRangeOfComposedCharactersAtIndex(CFStringRef theString, CFIndex theIndex);
void CFStringLowercase(CFMutableStringRef theString, CFLocaleRef _Nullable locale);
void CFStringNormalize(CFMutableStringRef theString, CFStringNormalizationForm theForm);

typedef CFStringRef CFRunLoopMode;
extern const CFRunLoopMode _Null_unspecified kCFRunLoopCommonModes;
CFRunLoopRef _Null_unspecified CFRunLoopGetMain(void);
void CFRunLoopRun(void);
void CFRunLoopAddSource(CFRunLoopRef _Null_unspecified rl,
                        CFRunLoopSourceRef _Null_unspecified source,
                        CFRunLoopMode _Null_unspecified mode);

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
