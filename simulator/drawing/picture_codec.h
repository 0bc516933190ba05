#pragma once

#include <string>
#include <string_view>

#include "simulator/drawing/picture.h"

namespace simulator {

/// All that is drawn of a picture, as bytes.
std::string encodedPicture(const Picture& picture);

/// The picture again: it is drawn as the one before. Throws MalformedDatum for bytes that are none.
Picture decodedPicture(std::string_view bytes);

}  // namespace simulator
