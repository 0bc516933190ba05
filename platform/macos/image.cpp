#include "platform/image.h"

#include <ImageIO/ImageIO.h>

#include <array>

#include "platform/macos/owned.h"
#include "platform/posix/files.h"

namespace image {

namespace {

using macos::Owned;

constexpr CFIndex growing = 0;

CGImageRef native(const Image& image) { return static_cast<CGImageRef>(image.get()); }

platform::Bytes bytes(CFDataRef data) {
  return {reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
          static_cast<std::size_t>(CFDataGetLength(data))};
}

// A picture as it stands in its file may lie on its side: how it is to be turned is said beside it,
// and only thumbnails heed that. Without a largest size one is as large as the picture.
Owned<CFDictionaryRef> uprightAndWhole() {
  std::array<const void*, 2> options = {kCGImageSourceCreateThumbnailFromImageAlways,
                                        kCGImageSourceCreateThumbnailWithTransform};
  std::array<const void*, 2> values = {kCFBooleanTrue, kCFBooleanTrue};
  return Owned(CFDictionaryCreate(
      kCFAllocatorDefault, options.data(), values.data(), static_cast<CFIndex>(options.size()),
      &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

}  // namespace

std::optional<Image> load(const std::string& path) {
  const std::optional<platform::Bytes> contents = posix::readFile(path);
  if (!contents) return std::nullopt;
  return decode(*contents);
}

std::optional<Image> decode(const platform::Bytes& encoded) {
  const Owned<CFDataRef> data(CFDataCreate(kCFAllocatorDefault,
                                           reinterpret_cast<const UInt8*>(encoded.data()),
                                           static_cast<CFIndex>(encoded.size())));
  const Owned<CGImageSourceRef> source(CGImageSourceCreateWithData(data.get(), nullptr));
  if (!source) return std::nullopt;
  Owned<CGImageRef> image(
      CGImageSourceCreateThumbnailAtIndex(source.get(), 0, uprightAndWhole().get()));
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
