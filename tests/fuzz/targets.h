#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

/// What is given bytes that nobody meant well.
namespace fuzz {

/// Something that takes bytes from outside.
struct Target {
  /// Of its folder in tests/fuzz/corpus and of its dictionary.
  std::string_view name;

  /// Takes an input. What is wrong with what came of it; empty when nothing is. An exception is
  /// wrong as well.
  std::string (*complaint)(const std::string& input);
};

/// All there are.
std::span<const Target> targets();

/// Null when there is none of this name.
const Target* targetNamed(std::string_view name);

/// No input is longer than this, takes more memory at once, or more time of a processor.
inline constexpr std::size_t inputBytesMax = std::size_t{16} << 10;
inline constexpr std::size_t memoryBytesMax = std::size_t{512} << 20;
inline constexpr unsigned inputSecondsMax = 10;

}  // namespace fuzz
