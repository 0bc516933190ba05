#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "process.h"

namespace joined {

/// What "violations" and "session" write on a Mac on which nothing has gone wrong.
constexpr const char* noViolations = "{\"ok\":true,\"violations\":[]}\n";
constexpr const char* unlocked = "0 {\"locked\":false,\"ok\":true,\"onConsole\":true}\n";

/// The two programs.
std::string driverPath();
std::string simulatedMacPath();

/// A private directory for one test's files, gone with it.
class Folder {
 public:
  Folder();
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;
  ~Folder();

  std::string path(const std::string& name) const { return path_ + "/" + name; }

  /// Writes a file and gives its path.
  std::string file(const std::string& name, std::string_view contents) const;

 private:
  std::string path_;
};

/// A Mac that another process serves, in virtual time unless told otherwise. It ends with this.
class ServedMac {
 public:
  explicit ServedMac(std::string_view world,
                     const std::vector<std::string>& options = {"--virtual"});

  const std::string& socket() const { return socket_; }
  Process& process() { return process_; }

  /// The environment of a process that is to join, with further variables.
  Environment environment(Environment further = {}) const;

  /// "driver", or "simulated-mac", with these words and this Mac.
  Finished driver(const std::vector<std::string>& words, const Environment& further = {}) const;
  Finished command(const std::vector<std::string>& words) const;

  /// What the Mac answers to what "simulated-mac" would ask it with these words, as it travels.
  std::string tell(const std::vector<std::string>& words) const;

 private:
  Folder folder_;
  Process process_;
  std::string socket_;
};

/// The words of a command line that starts with "driver".
std::vector<std::string> driverCommand(const std::vector<std::string>& words);

}  // namespace joined
