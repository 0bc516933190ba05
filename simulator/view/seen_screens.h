#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <string>
#include <utility>

#include "simulator/drawing/drawn_pictures.h"

namespace companion {

/// The latest looks of the screens, each drawn when somebody wants to see it.
class SeenScreens {
 public:
  static constexpr std::size_t kept = 64;

  /// A picture, as `encodedPicture` gives it, by the name of its look.
  void add(std::string look, std::string picture);

  /// Null when there is none of this name any more, or it cannot be drawn.
  std::shared_ptr<const std::string> png(const std::string& look);

 private:
  std::deque<std::pair<std::string, std::string>> seen_;
  simulator::DrawnPictures drawn_;
};

}  // namespace companion
