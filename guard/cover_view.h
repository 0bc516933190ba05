#pragma once

#include <cstddef>
#include <string>

#include "platform/cover.h"
#include "platform/types.h"

namespace driver {

/// Where the title and the hint are among the labels of a cover's view.
inline constexpr std::size_t titleIndex = 0;
inline constexpr std::size_t hintIndex = 1;

/// Looks up the pictures that all covers of this run show. A persona with a face needs none. Asks
/// the directory service, and waits for it.
void lookUpCoverPictures();

/// What covers a screen of this size, with the texts as they are now and the pictures that were
/// looked up.
cover::View privacyScreen(const platform::Size& size);

/// A label of a cover with another text: centred where it was, at the same height.
cover::Label relabelled(const cover::Label& label, const std::string& text, double coverWidth);

}  // namespace driver
