#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/// The candidate that was probably meant: the first of those that differ by the fewest characters
/// added, left out, changed or swapped, when that is at most a third of them. Empty when none does.
std::string nearest(std::string_view written, const std::vector<std::string>& candidates);

/// What a message says of it, behind all else: "; did you mean 'size'?". Empty for an empty one.
std::string suggestion(const std::string& meant);

}  // namespace simulator
