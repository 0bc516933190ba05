#pragma once

#include <string>
#include <string_view>

#include "simulator/companion/descriptor.h"

namespace companion {

/// What the private name of a Mac's socket begins with.
inline constexpr std::string_view macSocketPrefix = "@simulated-mac-";

/// What stands before the path of a Mac's socket in the name of a socket that tells where it is: so
/// that Macs are found whose own names could be anybody's.
inline constexpr std::string_view macBeaconPrefix = "@simulated-mac+";

/// Sixteen random bytes as hexadecimal digits: nobody can guess them.
std::string randomDigits();

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
  Descriptor beacon_;  // none for a private name
};

/// The next process that wants to join, as a non-blocking descriptor; none when there is none now.
/// Processes of other users are turned away.
Descriptor acceptFrom(int listeningDescriptor);

}  // namespace companion
