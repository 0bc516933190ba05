// Decodes a picture of two points beside each other that says of itself that it lies on its side.
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/ImageIO.h>

#include <array>
#include <cstddef>
#include <cstdint>

#include "support/answer.h"

namespace {

// TIFF, little-endian: a header, one directory of entries, then the points.
constexpr std::size_t headerBytes = 8;
constexpr std::size_t entryBytes = 12;
constexpr std::uint8_t shortNumber = 3;
constexpr std::uint8_t longNumber = 4;
constexpr std::uint8_t turnedRight = 6;

struct Entry {
  std::uint16_t tag;
  std::uint8_t type;
  std::uint8_t value;
};
constexpr std::size_t entryCount = 10;
constexpr std::size_t pointsStart = headerBytes + 2 + entryCount * entryBytes + 4;
constexpr std::array<Entry, entryCount> entries = {{{256, shortNumber, 2},  // width
                                                    {257, shortNumber, 1},  // height
                                                    {258, shortNumber, 8},  // bits of a point
                                                    {259, shortNumber, 1},  // not compressed
                                                    {262, shortNumber, 1},  // 0 is black
                                                    {273, longNumber, pointsStart},
                                                    {274, shortNumber, turnedRight},
                                                    {277, shortNumber, 1},   // grey alone
                                                    {278, shortNumber, 1},   // rows in a strip
                                                    {279, longNumber, 2}}};  // bytes in a strip
using Picture = std::array<UInt8, pointsStart + 2>;

Picture picture() {
  Picture bytes = {'I', 'I', 42, 0, headerBytes, 0, 0, 0, entryCount, 0};
  std::size_t at = headerBytes + 2;
  for (const Entry& entry : entries) {
    bytes[at] = static_cast<UInt8>(entry.tag & 0xFF);
    bytes[at + 1] = static_cast<UInt8>(entry.tag >> 8);
    bytes[at + 2] = entry.type;
    bytes[at + 4] = 1;
    bytes[at + 8] = entry.value;
    at += entryBytes;
  }
  bytes[pointsStart + 1] = 0xFF;
  return bytes;
}

CGImageRef decoded(const Picture& bytes) {
  CFDataRef data = CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size()));
  CGImageSourceRef source = CGImageSourceCreateWithData(data, nullptr);
  CFRelease(data);
  if (source == nullptr) return nullptr;
  std::array<const void*, 2> options = {kCGImageSourceCreateThumbnailFromImageAlways,
                                        kCGImageSourceCreateThumbnailWithTransform};
  std::array<const void*, 2> values = {kCFBooleanTrue, kCFBooleanTrue};
  CFDictionaryRef asked = CFDictionaryCreate(
      nullptr, options.data(), values.data(), static_cast<CFIndex>(options.size()),
      &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  CGImageRef image = CGImageSourceCreateThumbnailAtIndex(source, 0, asked);
  CFRelease(asked);
  CFRelease(source);
  return image;
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  CGImageRef image = decoded(picture());
  if (image == nullptr) return probe::notShown(assumption, "the picture cannot be decoded");
  const auto width = static_cast<long long>(CGImageGetWidth(image));
  const auto height = static_cast<long long>(CGImageGetHeight(image));
  CFRelease(image);
  return probe::answer(assumption, probe::verdictOf(width == 1 && height == 2),
                       probe::Evidence().add("width", width).add("height", height));
}
