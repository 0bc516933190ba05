#include "base/utf8.h"

#include <cstdint>

namespace driver {

namespace {

struct Sequence {
  std::size_t length;  // bytes taken, at least 1
  bool wellFormed;
};

struct LeadByte {
  std::size_t length;          // of the whole sequence; 0 for a byte that starts none
  std::uint8_t secondLowest;   // range of the second byte, which excludes overlong forms,
  std::uint8_t secondHighest;  // surrogates and code points above U+10FFFF
};

LeadByte leadByte(std::uint8_t byte) {
  if (byte >= 0xC2 && byte <= 0xDF) return {2, 0x80, 0xBF};
  if (byte == 0xE0) return {3, 0xA0, 0xBF};
  if (byte == 0xED) return {3, 0x80, 0x9F};
  if (byte >= 0xE1 && byte <= 0xEF) return {3, 0x80, 0xBF};
  if (byte == 0xF0) return {4, 0x90, 0xBF};
  if (byte >= 0xF1 && byte <= 0xF3) return {4, 0x80, 0xBF};
  if (byte == 0xF4) return {4, 0x80, 0x8F};
  return {0, 0, 0};
}

Sequence firstSequence(std::string_view bytes) {
  const auto at = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  if (at(0) < 0x80) return {1, true};
  const LeadByte lead = leadByte(at(0));
  if (lead.length == 0) return {1, false};
  if (bytes.size() < 2 || at(1) < lead.secondLowest || at(1) > lead.secondHighest) {
    return {1, false};
  }
  for (std::size_t i = 2; i < lead.length; ++i) {
    if (i >= bytes.size() || (at(i) & 0xC0) != 0x80) return {i, false};
  }
  return {lead.length, true};
}

}  // namespace

std::string repairedUtf8(std::string_view bytes) {
  std::string repaired;
  repaired.reserve(bytes.size());
  while (!bytes.empty()) {
    const Sequence sequence = firstSequence(bytes);
    repaired += sequence.wellFormed ? bytes.substr(0, sequence.length) : "\xEF\xBF\xBD";
    bytes.remove_prefix(sequence.length);
  }
  return repaired;
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const Sequence sequence = firstSequence(bytes);
    if (!sequence.wellFormed) return false;
    bytes.remove_prefix(sequence.length);
  }
  return true;
}

}  // namespace driver
