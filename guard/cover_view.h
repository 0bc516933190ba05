#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "platform/cover.h"
#include "platform/types.h"

/// What a cover says and shows.
namespace driver {

/// Chooses the language of the texts that follow: that of ZENTROVE_DESK_LANG, else the user's.
void chooseGuardLanguage();

/// Who is at work on this Mac, or minds it: the persona when it has a face, else the product.
std::string guardTitle(bool operating);

/// What the user's next key does: it leads back while so many seconds of grace are left, else it
/// locks the screen.
std::string guardHint(std::int64_t graceLeft, bool noGrace);

std::string guardFooter();

/// Where the title and the hint are among the labels of a cover's view.
inline constexpr std::size_t titleIndex = 0;
inline constexpr std::size_t hintIndex = 1;

/// What covers a screen of this size, with the texts as they are now and the pictures that were
/// looked up.
cover::View privacyScreen(const platform::Size& size);

/// A label of a cover with another text: centred where it was, at the same height.
cover::Label relabelled(const cover::Label& label, const std::string& text, double coverWidth);

}  // namespace driver
