#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "simulator/companion/control.h"
#include "simulator/desktop.h"
#include "simulator/scheduler.h"

/// What somebody who watches a Mac is told of it.
namespace companion {

/// What he knows already.
struct Known {
  std::int64_t entry = 0;  // the number of the journal's latest entry
  std::string stamp;       // of the Mac; empty: nothing is known
  std::string look;        // of the screens
};

/// A Mac that is watched. Borrowed.
struct Watched {
  const simulator::Desktop& desktop;
  simulator::Scheduler::Time time;
  nlohmann::json pace;
};

/// What follows the word "news": the number of an entry, a stamp, a look. None for other words.
std::optional<Known> knownOf(const std::vector<std::string>& words);

/// Another text whenever there is something new.
std::string stampOf(const Watched& watched);

/// What is new: a line that tells how the Mac is, its screens as `encodedPicture` has them (empty
/// when they look as is known), and the latest entries of the journal.
ControlAnswer newsOf(const Watched& watched, const Known& known);

}  // namespace companion
