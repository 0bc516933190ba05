#pragma once

#include <stdint.h>
#include <time.h>

/// What a Mac's clocks have beside those of other systems.
#define CLOCK_UPTIME_RAW 8
extern "C" uint64_t clock_gettime_nsec_np(clockid_t clock);
