#include "platform/macos/standins/images.h"

#include <ImageIO/ImageIO.h>

#include <utility>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

ImageFault& fault() {
  static ImageFault fault = ImageFault::none;
  return fault;
}

struct Provider : Object {
  explicit Provider(std::optional<std::string> pixels)
      : Object(Type::provider), pixels(std::move(pixels)) {}
  std::string describe() const override { return "provider"; }
  std::optional<std::string> pixels;
};

struct Image : Object {
  explicit Image(Provider* provider) : Object(Type::image), provider(provider) {
    if (provider != nullptr) owned = {provider};
  }
  std::string describe() const override { return "image"; }
  Provider* provider;
};

struct Source : Object {
  explicit Source(std::string path) : Object(Type::imageSource), path(std::move(path)) {}
  std::string describe() const override { return "source of " + path; }
  std::string path;
};

struct Destination : Object {
  Destination(CFMutableDataRef data, std::string type)
      : Object(Type::imageDestination), data(data), type(std::move(type)) {
    owned = {CFRetain(data)};
  }
  std::string describe() const override { return "destination of " + type; }
  CFMutableDataRef data;
  std::string type;
  std::string pixels;
};

CGImageRef made(Provider* provider) {
  if (provider != nullptr) enter(provider);
  return reinterpret_cast<CGImageRef>(entered(new Image(provider)));
}

}  // namespace

CGImageRef image(std::string pixels) { return made(new Provider(std::move(pixels))); }

CGImageRef imageWithoutData() { return made(new Provider(std::nullopt)); }

CGImageRef imageWithoutProvider() { return made(static_cast<Provider*>(nullptr)); }

void setImageFault(ImageFault newFault) { fault() = newFault; }

}  // namespace standins

using namespace standins;

CGDataProviderRef CGImageGetDataProvider(CGImageRef image) {
  return reinterpret_cast<CGDataProviderRef>(as<Image>(image)->provider);
}

CFDataRef CGDataProviderCopyData(CGDataProviderRef provider) {
  const std::optional<std::string>& pixels = as<Provider>(provider)->pixels;
  return pixels ? data(*pixels) : nullptr;
}

CGImageSourceRef CGImageSourceCreateWithURL(CFURLRef url, CFDictionaryRef) {
  if (fault() == ImageFault::noSource) return nullptr;
  return reinterpret_cast<CGImageSourceRef>(entered(new Source(pathOf(url))));
}

CGImageRef CGImageSourceCreateImageAtIndex(CGImageSourceRef isrc, size_t index, CFDictionaryRef) {
  if (index != 0) noteMistake("another picture than the first");
  if (fault() == ImageFault::noImage) return nullptr;
  return image("pixels of " + as<Source>(isrc)->path);
}

CGImageDestinationRef CGImageDestinationCreateWithData(CFMutableDataRef data, CFStringRef type,
                                                       size_t count, CFDictionaryRef) {
  if (count != 1) noteMistake("another number of pictures than one");
  if (fault() == ImageFault::noDestination) return nullptr;
  return reinterpret_cast<CGImageDestinationRef>(entered(new Destination(data, describe(type))));
}

void CGImageDestinationAddImage(CGImageDestinationRef idst, CGImageRef image, CFDictionaryRef) {
  as<Destination>(idst)->pixels = as<Image>(image)->provider->pixels.value();
}

bool CGImageDestinationFinalize(CGImageDestinationRef idst) {
  if (fault() == ImageFault::notFinalized) return false;
  const Destination* destination = as<Destination>(idst);
  append(destination->data, destination->type + " " + destination->pixels);
  return true;
}
