#pragma once

#include <memory>
#include <stdexcept>

#include "simulator/desktop.h"

namespace soak {

/// A Mac that its snapshot is not like, or that has none.
class ResumptionFailure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// The Mac that the snapshot of another one makes. It is the same in all that can be seen of it:
/// state, trees, pictures, its own snapshot. Throws ResumptionFailure.
std::unique_ptr<simulator::Desktop> resumed(const simulator::Desktop& desktop);

}  // namespace soak
