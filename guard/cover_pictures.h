#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/image.h"
#include "platform/types.h"

/// The pictures on a cover, where no persona has a face: the user's and the application's.
namespace driver {

/// Looks up the pictures that all covers of this run show. A persona with a face needs none. Asks
/// the directory service, and waits for it.
void lookUpCoverPictures();

/// The application bundle that a tool at this path, free of links, belongs to: three folders above
/// it. None when that is no application bundle.
std::optional<std::string> enclosingBundle(std::string_view toolPath);

/// The photo in the user's directory record; none when there is none that can be shown.
std::optional<image::Image> userPicture();

/// The photo's bytes in what the directory tool writes of it; none when that has none, or one that
/// is too short to be a photo.
std::optional<platform::Bytes> photoBytes(std::string_view record);

}  // namespace driver
