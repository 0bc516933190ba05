#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/pasteboard.h"
#include "platform/types.h"

/// The general pasteboard.
namespace simulator {

inline constexpr std::string_view plainTextType = "public.utf8-plain-text";
inline constexpr std::string_view fileUrlType = "public.file-url";

struct Pasteboard {
  struct Entry {
    std::string type;
    std::optional<platform::Bytes> data;  // absent: promised, and never supplied
  };
  using Item = std::vector<Entry>;  // in the order of its types

  std::vector<Item> items;
  std::int64_t changeCount = 1;
  platform::Pid owner = 0;  // who cleared it last; 0: the user, or an application
};

/// All that can be read, item by item. An item of promises alone is there, without types.
std::vector<pasteboard::Item> readableItems(const Pasteboard& pasteboard);

/// Empties it for a process, which alone may write to it from then on.
void clearPasteboard(Pasteboard& pasteboard, platform::Pid owner);

/// Adds items for a process. False, and nothing is added, unless that process cleared it last.
bool writeItems(Pasteboard& pasteboard, platform::Pid owner,
                const std::vector<pasteboard::Item>& items);

/// Somebody who is no client of the Mac copies a text.
void copyText(Pasteboard& pasteboard, const std::string& text);

/// The reference to a file, as a URL.
std::string fileUrl(std::string_view path);

/// The path of such a URL; none for another text.
std::optional<std::string> pathOfFileUrl(std::string_view url);

/// The paths of the files on it, in order.
std::vector<std::string> pastedFiles(const Pasteboard& pasteboard);

/// What a field of text takes of it: the paths of files, else the plain texts, one in a line. None
/// when there is neither.
std::optional<std::string> pastedText(const Pasteboard& pasteboard);

}  // namespace simulator
