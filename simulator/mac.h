#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/call.h"
#include "simulator/drawing.h"
#include "simulator/journal.h"
#include "simulator/world.h"

namespace simulator {

/// How long an application has to answer an accessibility message before the platform gives up.
inline constexpr Microseconds messagingTimeout = 6'000'000;

/// A process that uses the Mac.
struct Client {
  Pid pid = 0;
  std::vector<std::string> arguments;
  std::map<std::string, std::string> environment;
  std::map<std::int64_t, Picture> pictures;  // by number
  std::string output;  // what it wrote to standard output, as far as the Mac keeps it
  bool outputRefused = false;
  bool exited = false;
  int status = 0;
};

/// The running Mac: its world, its clock, and what it keeps for its clients.
struct Mac {
  World world;
  Microseconds now = 0;
  std::vector<JournalEntry> journal;
  std::int64_t numbers = 0;  // the last number given to an event, source or picture
};

/// What a call gives, and how long after the call it is due.
struct Answer {
  driver::Datum value;
  Microseconds delay = 0;
};

}  // namespace simulator
