#pragma once

#include <type_traits>

namespace macos {

/// True when a number of the seam is the platform's own, so that one may be cast to the other.
template <class Ours, class Theirs>
constexpr bool sameNumber(Ours ours, Theirs theirs) {
  return static_cast<std::underlying_type_t<Ours>>(ours) ==
         static_cast<std::underlying_type_t<Ours>>(theirs);
}

}  // namespace macos
