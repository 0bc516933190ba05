#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>

#include "simulator/drawing/picture.h"

namespace simulator {

/// The pictures that were drawn last, so that what has not changed is not drawn again. An agent
/// looks at the same window more often than the window changes.
class DrawnPictures {
 public:
  static constexpr std::size_t kept = 16;

  /// The picture as `drawPng` gives it; null when that gives none.
  std::shared_ptr<const std::string> png(const Picture& picture);

 private:
  struct Drawn {
    std::uint64_t digest = 0;
    std::shared_ptr<const std::string> png;
  };

  std::deque<Drawn> drawn_;  // in the order in which they were last asked for
};

/// Those of this process. Its Macs, of which tests have thousands, show mostly the same.
DrawnPictures& drawnPictures();

}  // namespace simulator
