#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/geometry.h"
#include "platform/cover.h"
#include "platform/types.h"

/// Panels that processes show in front of all windows, one for a screen.
namespace simulator {

/// A picture that is no screenshot: it has no pixels, and is drawn after what it is and its name.
struct Portrait {
  enum class Kind {
    face,   // loaded from a file: an agent's
    photo,  // decoded: a person's
    icon,   // of a file or bundle
  };
  Kind kind = Kind::face;
  std::string name;  // the path; of a photo the person's
  friend bool operator==(const Portrait&, const Portrait&) = default;
};

struct CoverPicture {
  Portrait portrait;
  driver::Rect frame;  // points from the cover's lower left corner
  bool isRound = false;
};

struct Cover {
  platform::Pid owner = 0;
  std::size_t number = 0;  // among the owner's
  platform::WindowNumber window = 0;
  driver::Rect frame;  // global points, y downwards
  std::int64_t level = 0;
  double dimmingAlpha = 0;
  std::vector<CoverPicture> pictures;
  std::vector<cover::Label> labels;  // places from the lower left corner
};

/// What `decode` makes of a file's first bytes: none for a format nobody knows.
bool isPictureData(const platform::Bytes& bytes);

/// A place of the screens' space, whose y grows upwards from the lower edge of the first screen, as
/// global points, and the other way round: the two are the same flip.
driver::Rect flipped(const driver::Rect& rect, const driver::Rect& firstScreen);

}  // namespace simulator
