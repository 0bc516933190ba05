#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "main/replies.h"
#include "platform/ax.h"

namespace driver {

/// A menu title as it is compared: without ellipses, case and white space aside.
std::string menuKey(std::string_view title);

/// Presses the menu item at the end of the path of titles, each the beginning of an item's, or all
/// of it; and returns the reply.
Reply axMenu(const ax::Element& application, const std::vector<std::string>& path);

}  // namespace driver
