#include "simulator/view/seen_screens.h"

#include <algorithm>

#include "base/datum.h"
#include "simulator/drawing/picture_codec.h"

namespace companion {

void SeenScreens::add(std::string look, std::string picture) {
  if (seen_.size() == kept) seen_.pop_front();
  seen_.emplace_back(std::move(look), std::move(picture));
}

std::shared_ptr<const std::string> SeenScreens::png(const std::string& look) {
  const auto found = std::find_if(seen_.begin(), seen_.end(),
                                  [&](const auto& each) { return each.first == look; });
  if (found == seen_.end()) return nullptr;
  try {
    return drawn_.png(simulator::decodedPicture(found->second));
  } catch (const driver::MalformedDatum&) {
    return nullptr;  // a Mac of another version
  }
}

}  // namespace companion
