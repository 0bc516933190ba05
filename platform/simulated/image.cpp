#include "platform/image.h"

#include "platform/simulated/channel.h"

namespace image {

using platform::Function;
using simulated::ask;
using simulated::askFor;
using simulated::objectOf;

// A picture is the number the simulated Mac gives it.
std::optional<Image> load(const std::string& path) {
  const auto number = ask(Function::loadImage, path);
  if (number.isNothing()) return std::nullopt;
  return simulated::makeHandle<Image>(driver::unpack<std::int64_t>(number));
}

std::optional<platform::Bytes> png(const Image& image) {
  return askFor<std::optional<platform::Bytes>>(Function::pngOfImage,
                                                objectOf<std::int64_t>(image));
}

std::optional<platform::Bytes> pixels(const Image& image) {
  return askFor<std::optional<platform::Bytes>>(Function::pixelsOfImage,
                                                objectOf<std::int64_t>(image));
}

}  // namespace image
