#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/world/world.h"

/// A case: a Mac, what happens to it, what goes wrong, and the runs of an agent. It is a plain
/// value, which is generated, played, made smaller, and written as files and read back.
namespace soak {

using simulator::Microseconds;

/// A line of a world's text: what it needs, what may be left out of it, and what belongs to it.
struct WorldLine {
  std::string head;
  std::vector<std::string> options = {};
  std::vector<WorldLine> lines = {};

  friend bool operator==(const WorldLine&, const WorldLine&) = default;
};

/// What comes to a process from outside of the Mac.
struct Delivery {
  enum class Kind { input, endOfInput, signal };
  Kind kind = Kind::input;
  Microseconds at = 0;  // since the step began
  std::string text = {};
  int signal = 0;

  friend bool operator==(const Delivery&, const Delivery&) = default;
};

/// One run of the driver.
struct Step {
  std::vector<std::string> words;  // behind the tool's path
  std::map<std::string, std::string> environment = {};
  /// How long after the step before it has ended; when that one runs beside, after it has begun.
  Microseconds after = 0;
  bool beside = false;                    // what follows does not wait for its end
  std::vector<Delivery> deliveries = {};  // in the order of their times

  friend bool operator==(const Step&, const Step&) = default;
};

/// What stands in a word or a variable for a folder of the case's own.
inline constexpr std::string_view folderName = "FOLDER";

/// The same in a variable for the process id of the capture service that was started last.
inline constexpr std::string_view serviceName = "SERVICE";

struct Case {
  std::vector<WorldLine> world;
  std::vector<std::string> faults = {};  // as simulator::parseFault reads them
  std::vector<Step> steps;
  /// What decides by chance which flow goes on when several could; absent: each until it waits.
  std::optional<std::uint64_t> turns = {};

  friend bool operator==(const Case&, const Case&) = default;
};

/// The world as `simulated-mac run` reads it.
std::string worldText(const Case& one);

/// The rest of the case: a line for each fault, step and delivery.
std::string stepsText(const Case& one);

/// Reads both back; the lines of the world have no options then. Throws simulator::WorldError.
Case readCase(std::string_view world, std::string_view steps);

/// A text in quotation marks, as worlds have it, of printable characters alone.
std::string inQuotes(std::string_view text);

/// A byte as worlds and shells have it in a text: "\xHH".
std::string escaped(char byte);

/// The text with each `name` replaced.
std::string replaced(std::string text, std::string_view name, const std::string& replacement);

}  // namespace soak
