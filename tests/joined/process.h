#pragma once

#include <sys/types.h>

#include <map>
#include <string>
#include <vector>

/// Programs that a test starts, seen from outside.
namespace joined {

using Environment = std::map<std::string, std::string>;

/// What a program came to.
struct Finished {
  int status = 0;  // the exit status, or 128 and the signal
  std::string output;
  std::string errors;
};

/// The whole of what a caller sees: "STATUS OUTPUT", and what went to standard error, if anything.
std::string seen(const Finished& finished);

/// A running program. It has only the variables it is given and PATH. Whoever does not end within
/// half a minute is killed, as it is when this goes, or the test's own process.
class Process {
 public:
  explicit Process(const std::vector<std::string>& command, const Environment& environment = {});
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;
  ~Process();

  pid_t pid() const { return pid_; }

  /// The next line it prints, without the line feed; what there was at the end of its output.
  std::string readLine();

  /// Writes to its standard input. False when it does not read any more.
  bool offer(const std::string& text) const;

  /// The same, and throws when it does not.
  void write(const std::string& text) const;
  void closeInput();

  /// Reads no more of what it prints.
  void closeOutput();

  void signal(int number) const;

  /// Reads the rest of its output and waits for its end.
  Finished finish();

 private:
  bool readMore();
  void keepReplies() const;

  std::vector<std::string> command_;
  std::string written_;  // all that was read of its output
  pid_t pid_ = -1;
  int input_ = -1;
  int output_ = -1;
  int errors_ = -1;
  Finished finished_;
};

/// What a command is put behind to be another user's. Only root can.
inline const std::vector<std::string> asAnotherUser = {"/usr/bin/setpriv", "--reuid=65534",
                                                       "--clear-groups"};

/// Runs a program with this standard input to its end.
Finished run(const std::vector<std::string>& command, const Environment& environment = {},
             const std::string& input = "");

}  // namespace joined
