#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "simulator/desktop.h"
#include "tests/oracle/oracle.h"
#include "tests/soak/case.h"

namespace soak {

/// What became of a step.
struct PlayedStep {
  std::size_t client = 0;  // of the desktop
  int status = 0;          // as testing_support::runDirect gives it
  std::string output;
  std::optional<Microseconds> began;  // absent: it never did
  Microseconds ended = 0;
  std::optional<oracle::Expectation> expected;  // where the oracle has an opinion
  std::int64_t entriesBefore = 0;               // of the journal, when it began
  std::int64_t entriesAfter = 0;                // and when it had ended
};

/// What happened when a case was played.
struct Played {
  simulator::World before;                      // the Mac that the case describes
  std::unique_ptr<simulator::Desktop> desktop;  // as it was at the end
  std::vector<PlayedStep> steps;                // as those of the case
  long handlesLeft = 0;                         // more than the runs were to leave behind
  std::string earlierTrace;                     // of the Macs that went before this desktop's
};

/// How a case is played: runs of which none is beside another need no flows, which is faster.
/// Or each on a Mac that was made of a snapshot of the one before: only those that are alone.
enum class Way { fast, inFlows, resumed };

/// Whether all of its runs follow each other, none lives on, none gets anything from outside, and
/// no chance decides which flow goes on.
bool runsAlone(const Case& one);

/// Whether every call is kept, which takes time.
enum class Trace { kept, none };

/// Plays a case in this process, in virtual time, with every rule of the simulated Mac. `folder` is
/// the path of one that exists. Throws simulator::WorldError for a case that says something
/// impossible, and ResumptionFailure.
Played play(const Case& one, const std::string& folder, Way way = Way::fast,
            Trace trace = Trace::kept);

/// Whether a signal has ended the run before it could say so.
bool isKilled(const PlayedStep& step);

/// Every call of every run with its answer.
std::string traceOf(const Played& played);

}  // namespace soak
