#include "simulator/world/cover.h"

#include <array>
#include <string_view>

namespace simulator {

bool isPictureData(const platform::Bytes& bytes) {
  constexpr std::array<std::string_view, 5> beginnings = {"\xFF\xD8\xFF", "\x89PNG\r\n", "GIF8",
                                                          "MM", "II"};
  for (const std::string_view beginning : beginnings) {
    if (bytes.starts_with(beginning)) return true;
  }
  return false;
}

driver::Rect flipped(const driver::Rect& rect, const driver::Rect& firstScreen) {
  const double lowerEdge = firstScreen.y + firstScreen.height;
  return {rect.x, lowerEdge - rect.y - rect.height, rect.width, rect.height};
}

}  // namespace simulator
