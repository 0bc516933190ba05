#pragma once

#include <cstdint>

#include "platform/share.h"
#include "platform/types.h"

namespace simulator {

/// A window that a process shares. The system marks it as long as the process and the stream live.
struct Sharing {
  std::int64_t stream = 0;
  platform::Pid client = 0;
  platform::WindowNumber window = 0;
  platform::Pid owner = 0;  // of the window, which may have gone since
  share::StreamConfiguration configuration;
  std::int64_t since = 0;  // when it started, in microseconds of virtual time
};

}  // namespace simulator
