#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// What differs between the releases of macOS, as far as it is known or assumed.
namespace simulator {

/// A release that a world may name: `macos 15` stands for all that is set with it.
struct Release {
  int number = 0;
  process::Version version;
};

inline constexpr std::array releases = {Release{14, {14, 7}}, Release{15, {15, 7}},
                                        Release{26, {26, 5}}};

/// A row of the table of settings: a line that sets one, and which releases do.
struct ReleaseSetting {
  const char* phrase;       // behind the word `system`
  const char* description;  // what is so then
  std::array<bool, releases.size()> isSetBy;
  void (*apply)(System& system);
};

/// All there are. Of those with one first word each release has one.
std::span<const ReleaseSetting> releaseSettings();

/// Whether the system is as the setting says.
bool isSet(const System& system, const ReleaseSetting& setting);

/// The release of that number, with all its settings, comes in place of what was set before. False
/// when there is none.
bool applyRelease(System& system, int number);

/// Reads one setting up to the end of the line.
void readReleaseSetting(Words& words, World& world);

}  // namespace simulator
