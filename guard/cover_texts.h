#pragma once

#include <cstdint>
#include <string>

/// What the cover says.
namespace driver {

/// Chooses the language of the texts that follow: that of ZENTROVE_DESK_LANG, else the user's.
void chooseGuardLanguage();

/// Who is at work on this Mac, or minds it: the persona when it has a face, else the product.
std::string guardTitle(bool operating);

/// What the user's next key does: it leads back while so many seconds of grace are left, else it
/// locks the screen.
std::string guardHint(std::int64_t graceLeft, bool noGrace);

std::string guardFooter();

}  // namespace driver
