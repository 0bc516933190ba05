#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/companion/record.h"
#include "simulator/scheduler.h"

namespace companion {

using simulator::Scheduler;

/// What the commands that start a Mac are told.
struct Options {
  Scheduler::Time time = Scheduler::Time::real;
  std::string world;                  // a path, or "-" for standard input
  std::string socket;                 // empty: a private one
  bool untilClosed = false;           // standard input ends the Mac
  bool sleeps = false;                // the command's own sleeps are of virtual time
  std::optional<std::uint64_t> seed;  // in place of the world's
  std::optional<std::string> view;    // whether a browser is shown the Mac, and at which port
  RecordOptions record;               // what is kept of it
  std::string snapshot;               // the file that holds its state at the end; empty: none
  std::vector<std::string> command;   // what follows "--"
};

/// Reads the words after "serve" and "run". Throws UsageError.
Options serveOptions(const std::vector<std::string>& words);
Options runOptions(const std::vector<std::string>& words);

}  // namespace companion
