#pragma once

#include <cstdint>
#include <optional>
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

/// All items, in order; absent when the pasteboard could not be read. A type that is promised and
/// cannot be supplied, or that the system does not let this process read, is left out; an item
/// without any other is there, and empty.
std::optional<std::vector<Item>> items();

/// A number that grows by one each time somebody clears the pasteboard, as every copy does. Writing
/// what one has cleared oneself leaves it as it is.
std::int64_t changeCount();

/// Returns the change count that this very clearing has made.
std::int64_t clear();

/// Adds items with all their representations. False when the system refused.
bool write(const std::vector<Item>& items);

/// Adds the files at these absolute paths, as references. They need not exist. False when the
/// system refused.
bool writeFiles(const std::vector<std::string>& paths);

}  // namespace pasteboard
