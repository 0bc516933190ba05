#include "simulator/drawing/drawn_pictures.h"

#include <algorithm>
#include <utility>

#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"

namespace simulator {

std::shared_ptr<const std::string> DrawnPictures::png(const Picture& picture) {
  const std::uint64_t wanted = digest(picture);
  const auto known = std::find_if(drawn_.begin(), drawn_.end(),
                                  [&](const Drawn& drawn) { return drawn.digest == wanted; });
  if (known != drawn_.end()) {
    std::rotate(known, known + 1, drawn_.end());
    return drawn_.back().png;
  }
  auto png = drawPng(picture);
  if (!png) return nullptr;
  if (drawn_.size() == kept) drawn_.pop_front();
  drawn_.push_back({wanted, std::make_shared<const std::string>(std::move(*png))});
  return drawn_.back().png;
}

DrawnPictures& drawnPictures() {
  static DrawnPictures drawn;
  return drawn;
}

}  // namespace simulator
