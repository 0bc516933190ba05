#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace soak {

/// What the program is told.
struct Options {
  std::uint64_t seed = 1;             // the first
  std::optional<std::uint64_t> runs;  // how many seeds from there on
  std::optional<double> seconds;      // for how long
  std::size_t jobs = 1;               // processes that play at once
  bool showsCoverage = false;
  bool stopsAtFirst = false;          // no seed above one that failed is begun
  std::vector<std::string> commands;  // cases that run none of them are passed over; empty: none is
  bool shows = false;                 // prints the case of the seed in place of playing it
  std::optional<std::string> shrunk;  // a folder for the smallest case that fails as the seed does
  std::optional<std::string> replayed;  // a folder of a case to play in place of seeds
  std::optional<std::string> scripted;  // one of which the script is printed
};

/// Reads the words behind the program's name; none when they make no sense.
std::optional<Options> readOptions(const std::vector<std::string>& words);

inline constexpr const char* usage =
    "usage: soak [--seed N] [--runs R | --seconds S] [--jobs J] [--coverage] [--first]\n"
    "            [--of COMMAND,...]\n"
    "       soak --show SEED\n"
    "       soak --shrink SEED FOLDER\n"
    "       soak --replay FOLDER\n"
    "       soak --script FOLDER\n";

}  // namespace soak
