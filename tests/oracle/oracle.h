#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "simulator/mac/mac.h"
#include "tests/oracle/opinion.h"

/// A second reading of the commands' reference: what a run must come to, said without the product.
///
/// It shares no code with the product. It looks at the simulated Mac's own structures, and plays on
/// a copy of them what the reference says that a command does, step by step. It is slow and plain
/// on purpose.
namespace oracle {

/// What a run must come to.
struct Expectation {
  int status = 0;
  std::string output;  // the whole of it, line feed included
  /// How long it takes, and what it does to the Mac, as the simulated Mac's journal tells it,
  /// without the two writes that enable accessibility. None when an application takes time to
  /// answer.
  std::optional<simulator::Microseconds> elapsed;
  std::optional<std::string> effects;
};

/// What a run with these arguments (without the tool's path) and this environment must come to on
/// the Mac as it stands; none where the oracle has no opinion, and then `why` says why unless it is
/// null. The run is taken to be the only one that uses the Mac, and no call of it to fail.
std::optional<Expectation> expected(const simulator::Mac& before,
                                    const std::vector<std::string>& arguments,
                                    const std::map<std::string, std::string>& environment,
                                    Silence* why = nullptr);

}  // namespace oracle
