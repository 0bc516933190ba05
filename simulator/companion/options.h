#pragma once

#include <string>
#include <vector>

#include "simulator/scheduler.h"

namespace companion {

using simulator::Scheduler;

/// What the commands that start a Mac are told.
struct Options {
  Scheduler::Time time = Scheduler::Time::real;
  std::string world;                 // a path, or "-" for standard input
  std::string socket;                // empty: a private one
  bool untilClosed = false;          // standard input ends the Mac
  std::vector<std::string> command;  // what follows "--"
};

/// Reads the words after "serve" and "run". Throws UsageError.
Options serveOptions(const std::vector<std::string>& words);
Options runOptions(const std::vector<std::string>& words);

/// The world in a file or, for "-", in standard input. Throws Failure.
simulator::World readWorld(const std::string& path);

}  // namespace companion
