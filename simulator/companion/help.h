#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace companion {

/// The topics, one a line and indented, with what each of them tells.
std::string topicLines();

/// What is known of a topic: a table, its columns two spaces apart, headings first. No cell is
/// empty ("-" stands for nothing) and none holds two spaces, so that a line can be taken apart.
/// Throws Failure for a topic that does not exist.
std::string topicText(std::string_view name);

}  // namespace companion
