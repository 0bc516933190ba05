#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "simulator/companion/descriptor.h"
#include "simulator/desktop.h"
#include "simulator/scheduler.h"

namespace companion {

/// What a record is to hold.
struct RecordOptions {
  std::string folder;  // empty: there is none
  bool pictures = true;
};

/// Keeps what happens in a Mac in a folder, as it happens, so that it can be looked back on:
/// docs/RECORDS.md has the format. What was kept before an answer left is there whatever becomes of
/// this process.
class Recorder {
 public:
  /// Begins a record. The folder is made when it is missing, and must have no record in it. Throws
  /// Failure.
  Recorder(const RecordOptions& options, const std::string& world, simulator::Scheduler::Time time);
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Keeps what has come since. Throws Failure when it cannot be written.
  void update(const simulator::Desktop& desktop);

  /// The same, and ends the record with the rules that were broken, and a snapshot.
  void finish(const simulator::Desktop& desktop);

 private:
  std::string newLines(const simulator::Desktop& desktop);
  std::string pictureLine(const simulator::Mac& mac, std::int64_t after);
  void write(const std::string& lines);

  std::string folder_;
  bool takesPictures_;
  simulator::Scheduler::Time time_;
  Descriptor file_;
  bool begun_ = false;              // the first line was written
  std::int64_t kept_ = 0;           // the number of the latest entry that was
  std::string latest_;              // the latest picture's name
  std::set<std::string> pictures_;  // that are kept, by name
};

}  // namespace companion
