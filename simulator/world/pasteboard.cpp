#include "simulator/world/pasteboard.h"

#include <utility>

namespace simulator {

namespace {

constexpr std::string_view filePrefix = "file://";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// What stands for itself in the path of a URL.
bool isPlain(char c) {
  constexpr std::string_view others = "-._~!$&'()*+,;=:@/";
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         others.find(c) != others.npos;
}

std::optional<unsigned> digitOf(char c) {
  const char upper = c >= 'a' && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
  const std::size_t digit = hexDigits.find(upper);
  if (digit == hexDigits.npos) return std::nullopt;
  return static_cast<unsigned>(digit);
}

const platform::Bytes* dataOf(const Pasteboard::Item& item, std::string_view type) {
  for (const Pasteboard::Entry& entry : item) {
    if (entry.type == type && entry.data) return &*entry.data;
  }
  return nullptr;
}

std::string joined(const std::vector<std::string>& lines) {
  std::string text;
  for (const std::string& line : lines) text += (text.empty() ? "" : "\n") + line;
  return text;
}

}  // namespace

std::vector<pasteboard::Item> readableItems(const Pasteboard& pasteboard) {
  std::vector<pasteboard::Item> items;
  for (const Pasteboard::Item& item : pasteboard.items) {
    pasteboard::Item& readable = items.emplace_back();
    for (const Pasteboard::Entry& entry : item) {
      if (entry.data) readable.push_back({entry.type, *entry.data});
    }
  }
  return items;
}

void clearPasteboard(Pasteboard& pasteboard, platform::Pid owner) {
  pasteboard.items.clear();
  ++pasteboard.changeCount;
  pasteboard.owner = owner;
}

bool writeItems(Pasteboard& pasteboard, platform::Pid owner,
                const std::vector<pasteboard::Item>& items) {
  // Writing without having cleared it last would mix two owners' items: the platform refuses.
  if (pasteboard.owner != owner) return false;
  for (const pasteboard::Item& item : items) {
    Pasteboard::Item& added = pasteboard.items.emplace_back();
    for (const auto& [type, data] : item) added.push_back({type, data});
  }
  return true;
}

void copyText(Pasteboard& pasteboard, const std::string& text) {
  clearPasteboard(pasteboard, 0);
  pasteboard.items = {{{std::string(plainTextType), text}}};
}

std::string fileUrl(std::string_view path) {
  std::string url(filePrefix);
  for (const char c : path) {
    if (isPlain(c)) {
      url += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    url += {'%', hexDigits[byte >> 4U], hexDigits[byte & 0xFU]};
  }
  return url;
}

std::optional<std::string> pathOfFileUrl(std::string_view url) {
  if (url.substr(0, filePrefix.size()) != filePrefix) return std::nullopt;
  url.remove_prefix(filePrefix.size());
  std::string path;
  while (!url.empty()) {
    const auto high = url[0] == '%' && url.size() > 2 ? digitOf(url[1]) : std::nullopt;
    const auto low = high ? digitOf(url[2]) : std::nullopt;
    path += low ? static_cast<char>(*high << 4U | *low) : url[0];
    url.remove_prefix(low ? 3 : 1);
  }
  return path;
}

std::vector<std::string> pastedFiles(const Pasteboard& pasteboard) {
  std::vector<std::string> paths;
  for (const Pasteboard::Item& item : pasteboard.items) {
    const platform::Bytes* url = dataOf(item, fileUrlType);
    auto path = url == nullptr ? std::nullopt : pathOfFileUrl(*url);
    if (path) paths.push_back(std::move(*path));
  }
  return paths;
}

std::optional<std::string> pastedText(const Pasteboard& pasteboard) {
  std::vector<std::string> lines = pastedFiles(pasteboard);
  if (lines.empty()) {
    for (const Pasteboard::Item& item : pasteboard.items) {
      if (const platform::Bytes* text = dataOf(item, plainTextType)) lines.push_back(*text);
    }
  }
  if (lines.empty()) return std::nullopt;
  return joined(lines);
}

}  // namespace simulator
