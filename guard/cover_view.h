#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "platform/cover.h"
#include "platform/image.h"
#include "platform/types.h"

namespace driver {

/// Where the title and the hint are among the labels of a cover's view.
inline constexpr std::size_t titleIndex = 0;
inline constexpr std::size_t hintIndex = 1;

/// The pictures that all covers of a run show: the user's, and the icon of the application that
/// this tool belongs to.
struct CoverPictures {
  std::optional<image::Image> user;
  std::optional<image::Image> icon;
};

/// Those this run has. A persona with a face needs none.
CoverPictures coverPictures();

/// What covers a screen of this size, with the texts as they are now.
cover::View privacyScreen(const platform::Size& size, const CoverPictures& pictures);

/// A label of a cover with another text: centred where it was, at the same height.
cover::Label relabelled(const cover::Label& label, const std::string& text, double coverWidth);

}  // namespace driver
