#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

namespace simulator {

struct Trail;

/// Where a line stands, and by which lines it came to be read there.
struct Spot {
  std::size_t line = 0;                // from 1, blank lines counted
  std::shared_ptr<const Trail> trail;  // null: in the world's own text, which is read as it is
};

/// How a line came to be read that another one brought in.
struct Trail {
  std::string file;  // that the line stands in; empty: the world's own text
  const char* verb;  // what the other one did: "used", "included"
  Spot by;           // where that one stands
};

/// The file that a line stands in; empty: the world's own text.
const std::string& fileOf(const Spot& spot);

/// A part of a line, in bytes.
struct Extent {
  std::size_t begin = 0;
  std::size_t length = 0;
};

/// What is wrong with a line.
struct Complaint {
  Spot spot;
  std::string cause;
  std::string meant = {};             // the nearest of what was expected; empty: nothing is near
  std::optional<Extent> extent = {};  // which part of the line it is about
  std::optional<std::string> about = {};  // or the word or text that it is about
  bool isWarning = false;                 // the line can be read, and may not be meant so
};

/// What a complaint says without its place: "cause; did you mean 'X'? (used in line 12)".
std::string messageOf(const Complaint& complaint);

/// A line that cannot be read. `what` is "line N: " and the complaint's message.
class WorldError : public std::runtime_error {
 public:
  explicit WorldError(Complaint complaint);
  WorldError(std::size_t line, const std::string& cause) : WorldError({{line, nullptr}, cause}) {}

  const Complaint& complaint() const { return complaint_; }

 private:
  Complaint complaint_;
};

}  // namespace simulator
