#include "simulator/companion/seen_screens.h"

#include <algorithm>

#include "simulator/drawing/picture_codec.h"

namespace companion {

void SeenScreens::add(std::string look, std::string picture) {
  if (seen_.size() == kept) seen_.pop_front();
  seen_.emplace_back(std::move(look), std::move(picture));
}

std::shared_ptr<const std::string> SeenScreens::png(const std::string& look) {
  const auto found = std::find_if(seen_.begin(), seen_.end(),
                                  [&](const auto& each) { return each.first == look; });
  return found == seen_.end() ? nullptr : drawn_.png(simulator::decodedPicture(found->second));
}

}  // namespace companion
