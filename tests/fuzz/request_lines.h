#pragma once

#include <cstdint>
#include <random>
#include <string>

/// Request lines for the capture service, of every degree of wrongness.
namespace fuzz {

using Random = std::mt19937_64;

/// One line: a request as the protocol's page has it, made worse step by step. The same generator
/// gives the same lines.
std::string requestLine(Random& random);

/// Why the parsers may not have taken a line as they did; empty when they may. It parses the line,
/// its session, its application, its scope and its command.
std::string complaintAbout(const std::string& line);

/// The same about each line of an input.
std::string complaintAboutLines(const std::string& input);

}  // namespace fuzz
