#include "simulator/companion/world_file.h"

#include <iostream>
#include <sstream>
#include <utility>

#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/text/parse.h"

namespace companion {

simulator::WorldFiles WorldFile::files() const {
  return {path == "-" ? "" : path, [](const std::string& each) -> std::optional<std::string> {
            try {
              return readFile(each);
            } catch (const Failure&) {
              return std::nullopt;
            }
          }};
}

WorldFile readWorldFile(const std::string& path) {
  if (path != "-") return {path, readFile(path)};
  std::ostringstream text;
  text << std::cin.rdbuf();
  return {path, text.str()};
}

simulator::World worldOf(const WorldFile& file) {
  simulator::WorldReading reading = simulator::readWorld(file.text, file.files());
  if (reading.errors.empty()) return std::move(reading.world);
  const simulator::WorldError first(reading.errors.front());
  const std::string& included = simulator::fileOf(first.complaint().spot);
  std::string message = (included.empty() ? file.name() : included) + ", " + first.what();
  const std::size_t more = reading.errors.size() - 1;
  if (more > 0) message += "; " + std::to_string(more) + " more: simulated-mac check " + file.path;
  throw Failure(message);
}

}  // namespace companion
