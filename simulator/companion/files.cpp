#include "simulator/companion/files.h"

#include <fstream>
#include <sstream>

#include "simulator/companion/failure.h"

namespace companion {

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw systemFailure("cannot read " + path);
  std::ostringstream text;
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (file.bad()) throw systemFailure("cannot read " + path);
  return text.str();
}

void writeFile(const std::string& path, const std::string& contents) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << contents;
  file.close();
  if (!file) throw systemFailure("cannot write " + path);
}

}  // namespace companion
