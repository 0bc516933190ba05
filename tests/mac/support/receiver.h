#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace probe {

/// The application that probes post to, as a process of its own that ends with this object. What
/// its lines say stands in receiver/receiver.mm.
class Receiver {
 public:
  Receiver();
  ~Receiver();
  Receiver(const Receiver&) = delete;
  Receiver& operator=(const Receiver&) = delete;

  /// Whether it has started and shown its windows.
  bool isReady() const { return pid_ != 0 && windows_[0] != 0; }
  pid_t pid() const { return pid_; }
  std::uint32_t window(int index) const { return windows_[index]; }

  /// Has it obey a command, and waits until it has.
  void tell(const std::string& command);

  /// The lines that it writes until it has written none for so long.
  std::vector<std::string> linesUntilQuiet(int milliseconds);

  struct State {
    std::uint32_t keyWindow = 0;
    bool active = false;
  };
  State state();

 private:
  std::optional<std::string> line(int milliseconds);
  std::optional<std::string> lineThatBegins(const std::string& words);
  void send(const std::string& command) const;

  pid_t process_ = 0;
  pid_t pid_ = 0;
  int input_ = -1;
  int output_ = -1;
  std::uint32_t windows_[2] = {0, 0};
  std::string read_;
  std::vector<std::string> passed_;
};

/// How many lines begin with these words.
long long countThatBegin(const std::vector<std::string>& lines, const std::string& words);

/// The lines as a list in JSON.
std::string jsonList(const std::vector<std::string>& lines);

}  // namespace probe
