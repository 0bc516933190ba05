#include "platform/image.h"

#include "platform/simulated/channel.h"

namespace image {

using platform::Function;
using simulated::ask;
using simulated::askFor;
using simulated::objectOf;

namespace {

// A picture is the number the simulated Mac gives it: it has the pixels, which seldom travel.
std::optional<Image> optionalImage(const driver::Datum& number) {
  if (number.isNothing()) return std::nullopt;
  return simulated::makeHandle<Image>(driver::unpack<std::int64_t>(number));
}

}  // namespace

std::optional<Image> load(const std::string& path) {
  return optionalImage(ask(Function::loadImage, path));
}

std::optional<Image> decode(const platform::Bytes& bytes) {
  return optionalImage(ask(Function::decodeImage, bytes));
}

std::optional<Image> fileIcon(const std::string& path) {
  return optionalImage(ask(Function::fileIcon, path));
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
