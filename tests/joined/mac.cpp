#include "mac.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "wire.h"

namespace joined {

namespace {

std::vector<std::string> serveCommand(const std::string& world,
                                      const std::vector<std::string>& options) {
  std::vector<std::string> command = {simulatedMacPath(), "serve", "--until-closed", world};
  command.insert(command.end(), options.begin(), options.end());
  return command;
}

std::vector<std::string> joinedWords(const std::string& program,
                                     const std::vector<std::string>& words) {
  std::vector<std::string> command = {program};
  command.insert(command.end(), words.begin(), words.end());
  return command;
}

}  // namespace

std::string driverPath() { return DRIVER_EXECUTABLE; }
std::string simulatedMacPath() { return SIMULATED_MAC_EXECUTABLE; }

std::vector<std::string> driverCommand(const std::vector<std::string>& words) {
  return joinedWords(driverPath(), words);
}

Folder::Folder() {
  std::string pattern = (std::filesystem::temp_directory_path() / "joined-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path_ = pattern;
}

Folder::~Folder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string Folder::file(const std::string& name, std::string_view contents) const {
  std::ofstream(path(name), std::ios::binary) << contents;
  return path(name);
}

ServedMac::ServedMac(std::string_view world, const std::vector<std::string>& options)
    : process_(serveCommand(folder_.file("world.txt", world), options)),
      socket_(process_.readLine()) {}

Environment ServedMac::environment(Environment further) const {
  further["SIMULATED_MAC"] = socket_;
  return further;
}

Finished ServedMac::driver(const std::vector<std::string>& words,
                           const Environment& further) const {
  return run(driverCommand(words), environment(further));
}

Finished ServedMac::command(const std::vector<std::string>& words) const {
  return run(joinedWords(simulatedMacPath(), words), environment());
}

std::string ServedMac::tell(const std::vector<std::string>& words) const {
  std::vector<std::string> request = {text("control")};
  for (const std::string& word : words) request.push_back(text(word));
  return Wire(socket_).exchange(list(request));
}

}  // namespace joined
