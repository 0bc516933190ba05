#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/types.h"

/// The general pasteboard.
namespace pasteboard {

/// One way in which an item is there.
struct Representation {
  std::string type;
  platform::Bytes data;
  friend bool operator==(const Representation&, const Representation&) = default;
};

/// An item, its representations in the pasteboard's order.
using Item = std::vector<Representation>;

/// All items, in order. A type that is promised and cannot be supplied is left out.
std::vector<Item> items();

/// A number that changes with every change of the pasteboard by anybody.
std::int64_t changeCount();

void clear();

/// Adds items with all their representations. False when the system refused.
bool write(const std::vector<Item>& items);

/// Adds the files at these absolute paths, as references. They need not exist. False when the
/// system refused.
bool writeFiles(const std::vector<std::string>& paths);

}  // namespace pasteboard
