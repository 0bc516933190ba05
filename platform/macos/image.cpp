#include "platform/image.h"

#include <ImageIO/ImageIO.h>

#include "platform/macos/owned.h"

namespace image {

namespace {

using macos::Owned;

constexpr CFIndex growing = 0;

CGImageRef native(const Image& image) { return static_cast<CGImageRef>(image.get()); }

platform::Bytes bytes(CFDataRef data) {
  return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
          static_cast<std::size_t>(CFDataGetLength(data))};
}

Owned<CGImageSourceRef> openSource(const std::string& path) {
  const Owned<CFURLRef> url(CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(path.data()),
      static_cast<CFIndex>(path.size()), false));
  if (!url) return {};
  return Owned(CGImageSourceCreateWithURL(url.get(), nullptr));
}

}  // namespace

std::optional<Image> load(const std::string& path) {
  const Owned<CGImageSourceRef> source = openSource(path);
  if (!source) return std::nullopt;
  Owned<CGImageRef> image(CGImageSourceCreateImageAtIndex(source.get(), 0, nullptr));
  if (!image) return std::nullopt;
  return Image(macos::shared(std::move(image)));
}

std::optional<platform::Bytes> png(const Image& image) {
  const Owned<CFMutableDataRef> data(CFDataCreateMutable(kCFAllocatorDefault, growing));
  const Owned<CGImageDestinationRef> destination(
      CGImageDestinationCreateWithData(data.get(), CFSTR("public.png"), 1, nullptr));
  if (!destination) return std::nullopt;
  CGImageDestinationAddImage(destination.get(), native(image), nullptr);
  if (!CGImageDestinationFinalize(destination.get())) return std::nullopt;
  return bytes(data.get());
}

std::optional<platform::Bytes> pixels(const Image& image) {
  const CGDataProviderRef provider = CGImageGetDataProvider(native(image));
  if (provider == nullptr) return std::nullopt;
  const Owned<CFDataRef> data(CGDataProviderCopyData(provider));
  if (!data) return std::nullopt;
  return bytes(data.get());
}

}  // namespace image
