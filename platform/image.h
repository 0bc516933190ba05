#pragma once

#include <optional>
#include <string>

#include "platform/types.h"

/// Pictures.
namespace image {

/// A picture. Copies share it.
using Image = platform::Handle<struct ImageTag>;

/// The picture in a file; none when it cannot be loaded.
std::optional<Image> load(const std::string& path);

/// The picture that these bytes encode, upright, in any format the platform knows; none when they
/// do not.
std::optional<Image> decode(const platform::Bytes& bytes);

/// The icon of the file or bundle at `path`.
std::optional<Image> fileIcon(const std::string& path);

/// The picture encoded as PNG; none when it cannot be encoded.
std::optional<platform::Bytes> png(const Image& image);

/// The raw pixel data, in the platform's own layout: fit only to be compared. Two pictures of an
/// unchanged window give equal bytes. None when there is no data.
std::optional<platform::Bytes> pixels(const Image& image);

}  // namespace image
