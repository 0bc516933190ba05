#pragma once

#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

#pragma clang assume_nonnull begin

typedef int64_t CMTimeValue;
typedef int32_t CMTimeScale;
typedef int64_t CMTimeEpoch;
typedef uint32_t CMTimeFlags;

#pragma pack(push, 4)
typedef struct {
  CMTimeValue value;
  CMTimeScale timescale;
  CMTimeFlags flags;
  CMTimeEpoch epoch;
} CMTime;
#pragma pack(pop)
CMTime CMTimeMake(int64_t value, int32_t timescale);

typedef struct opaqueCMSampleBuffer* CMSampleBufferRef;

#pragma clang assume_nonnull end

#ifdef __cplusplus
}
#endif
