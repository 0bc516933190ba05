#pragma once

#include <string>

namespace fuzz {

/// The text of a world: it is refused with a line of its own, or it is a Mac that runs for a while
/// and tells of itself in lines of JSON.
std::string complaintAboutWorld(const std::string& input);

}  // namespace fuzz
