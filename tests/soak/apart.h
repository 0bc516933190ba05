#pragma once

#include <optional>
#include <string>

#include "tests/soak/judges.h"

namespace soak {

/// The verdict of a process of its own, and whether the case is the same when it is repeated: what
/// ends that process, or does not come to an end, is a complaint by "crash" or "hang".
std::optional<Complaint> verdictApart(const Case& one, const std::string& folder);

/// What a worker's end means, by the status that `wait` gives; none when it ended as it should.
std::optional<Complaint> complaintOfEnd(int status);

/// A case that takes longer than this in real time counts as one without an end.
inline constexpr unsigned caseSecondsMax = 60;

}  // namespace soak
