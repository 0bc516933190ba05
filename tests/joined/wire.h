#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// The protocol between a process and a simulated Mac, written once more and independently.
namespace joined {

/// Values as they travel.
std::string nothing();
std::string boolean(bool value);
std::string integer(std::int64_t value);
std::string text(const std::string& value);
std::string list(const std::vector<std::string>& values);

/// A message: its length, then the value.
std::string frame(const std::string& value);

/// A call of the function with this number.
std::string call(std::int64_t function, const std::vector<std::string>& arguments);

inline constexpr std::int64_t uptimeFunction = 0;
inline constexpr std::int64_t sleepFunction = 2;
inline constexpr std::int64_t nullSignalFunction = 12;
inline constexpr std::int64_t exitFunction = 16;
inline constexpr std::int64_t writeOutputFunction = 24;

/// The process id of the process that joined a Mac as number `index`, counted from 0.
constexpr std::int64_t joinedPid(std::int64_t index) { return 5'000'000 + index; }

/// A process of the test's own that speaks the protocol.
class Wire {
 public:
  explicit Wire(const std::string& socketName);

  /// Takes over a connected socket.
  explicit Wire(int descriptor) : descriptor_(descriptor) {}

  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;
  ~Wire();

  /// Sends bytes as they stand; those that the other end no longer takes are lost.
  void send(const std::string& bytes) const;

  /// The value of the next message, as it travelled; "closed" when the other end closes instead,
  /// and "silent" when half a minute passes.
  std::string receive() const;

  /// Joins as a process; answers are sent when it is its turn.
  void join() const;

  std::string exchange(const std::string& value) const;

  /// Asks until the process with this id has joined. This one must have the turn.
  void awaitProcess(std::int64_t pid) const;

 private:
  bool receiveBytes(std::string& bytes) const;

  int descriptor_;
};

/// A stand-in for a Mac, which says to one process what the test says.
class WireMac {
 public:
  explicit WireMac(const std::string& path);
  WireMac(const WireMac&) = delete;
  WireMac& operator=(const WireMac&) = delete;
  ~WireMac();

  /// Waits for a process to connect.
  std::unique_ptr<Wire> accept() const;

 private:
  int descriptor_;
};

/// The function that a message calls; -1 when it is no call.
std::int64_t functionOf(const std::string& message);

}  // namespace joined
