#pragma once

#include <string>

#include "simulator/companion/descriptor.h"

namespace companion {

/// A socket name that nobody can guess and that is in no file system, so that nothing is left of it
/// however the process ends: "@" and random digits.
std::string privateSocketName();

/// A socket that a simulated Mac listens at.
class ListeningSocket {
 public:
  /// Listens at a name as SIMULATED_MAC has it. A socket in the file system is the owner's alone,
  /// and one that a killed process has left there is replaced. Throws Failure.
  explicit ListeningSocket(std::string name);
  ListeningSocket(const ListeningSocket&) = delete;
  ListeningSocket& operator=(const ListeningSocket&) = delete;

  /// Removes the socket from the file system.
  ~ListeningSocket();

  int descriptor() const { return descriptor_.number(); }
  const std::string& name() const { return name_; }

 private:
  std::string name_;
  Descriptor descriptor_;
};

/// The next process that wants to join, as a non-blocking descriptor; none when there is none now.
/// Processes of other users are turned away.
Descriptor acceptFrom(int listeningDescriptor);

}  // namespace companion
