#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace simulator {

/// Rows of pixels of four bytes each: blue, green, red, and one that means nothing. Borrowed.
struct PixelRows {
  const unsigned char* first = nullptr;
  std::ptrdiff_t stride = 0;  // bytes from one row to the next
  std::uint32_t width = 0;    // pixels
  std::uint32_t height = 0;   // pixels
};

/// The pixels as a PNG of eight bits for each of red, green and blue. The same pixels always give
/// the same bytes on one machine; another release of zlib may pack them otherwise.
std::string encodedPng(const PixelRows& rows);

}  // namespace simulator
