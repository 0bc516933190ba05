#include "simulator/companion/looks.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "simulator/drawing/digest.h"
#include "simulator/drawing/pictures.h"

namespace companion {

simulator::Picture plainScreens(const simulator::World& world) {
  simulator::Picture picture = simulator::screenPicture(world);
  picture.width = static_cast<std::uint64_t>(picture.source.width);
  picture.height = static_cast<std::uint64_t>(picture.source.height);
  return picture;
}

std::string lookOf(const simulator::Picture& picture) {
  std::array<char, 17> digits{};
  std::snprintf(digits.data(), digits.size(), "%016llx",
                static_cast<unsigned long long>(simulator::digest(picture)));
  return digits.data();
}

}  // namespace companion
