#pragma once

#include <string>

/// Files as a whole.
namespace companion {

/// What is in a file. Throws Failure.
std::string readFile(const std::string& path);

/// Writes a file anew. Throws Failure.
void writeFile(const std::string& path, const std::string& contents);

}  // namespace companion
