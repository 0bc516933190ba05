#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "accessibility/snapshot.h"
#include "main/replies.h"
#include "platform/ax.h"

namespace driver {

/// The items of the application's menu bar, in order; none when it cannot be read.
std::vector<Snapshot> axMenuBarItems(const ax::Element& application);

/// The element's title; empty when it has none.
std::string menuTitle(Snapshot& item);

/// The title as it is compared: without ellipses, case and white space aside.
std::string menuKey(std::string_view title);

/// Presses the menu item at the end of the path of titles, each the beginning of an item's, or all
/// of it; and returns the reply.
Reply axMenu(const ax::Element& application, const std::vector<std::string>& path);

}  // namespace driver
