#include "simulator/text/nearest.h"

#include <algorithm>
#include <cstddef>

namespace simulator {

namespace {

/// Longer words are no slips of a finger, and comparing them would take its time.
constexpr std::size_t lengthMax = 64;

/// How many letters apart two words are, a swap of neighbours counted as one.
std::size_t distance(std::string_view first, std::string_view second) {
  const std::size_t width = second.size() + 1;
  std::vector<std::size_t> beforeLast(width);
  std::vector<std::size_t> last(width);
  std::vector<std::size_t> row(width);
  for (std::size_t j = 0; j < width; ++j) last[j] = j;
  for (std::size_t i = 1; i <= first.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j < width; ++j) {
      const bool same = first[i - 1] == second[j - 1];
      row[j] = std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      const bool swapped =
          i > 1 && j > 1 && first[i - 1] == second[j - 2] && first[i - 2] == second[j - 1];
      if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
    }
    beforeLast.swap(last);
    last.swap(row);
  }
  return last.back();
}

}  // namespace

std::string nearest(std::string_view written, const std::vector<std::string>& candidates) {
  std::string found;
  if (written.size() > lengthMax) return found;
  std::size_t least = std::max<std::size_t>(written.size() / 3, 1) + 1;
  for (const std::string& each : candidates) {
    if (each == written || each.size() > lengthMax || written.size() < 2) continue;
    const std::size_t apart = distance(written, each);
    if (apart >= least) continue;
    least = apart;
    found = each;
  }
  return found;
}

std::string suggestion(const std::string& meant) {
  return meant.empty() ? "" : "; did you mean '" + meant + "'?";
}

}  // namespace simulator
