#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// Applications that were seen elsewhere, on their way into a world's text.
namespace companion {

struct ImportedElement {
  std::size_t depth = 0;  // 0 for a window and what else the application has; parents come first
  std::string role;
  std::string label;  // empty: none
  std::string description;
  std::string subrole;
  std::string placeholder;
  std::string identifier;
  std::optional<std::string> value;  // as it reads, a number too
  std::optional<simulator::Rect> frame;
  std::optional<std::int64_t> window;  // of a window: its number, where that is known
  std::int64_t layer = 0;              // of a window
  bool disabled = false;
  bool selected = false;
};

struct ImportedWindow {
  std::int64_t number = 0;
  std::int64_t layer = 0;
  std::string title;
  simulator::Rect frame;
};

struct ImportedApplication {
  std::string name;
  std::string bundle;  // empty: none
  std::int64_t pid = 0;
  bool active = false;
  std::vector<ImportedWindow> windows;    // as the window server lists them
  std::vector<ImportedElement> elements;  // whole trees, one after the other
  std::vector<std::string> menus;         // their titles
  std::vector<std::string> remarks;
};

/// A world with these applications.
std::string worldText(const std::vector<ImportedApplication>& applications);

}  // namespace companion
