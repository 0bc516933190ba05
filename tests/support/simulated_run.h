#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/desktop.h"

/// Runs of the driver on a simulated Mac, for tests.
namespace testing_support {

using Environment = std::map<std::string, std::string>;

/// What one run came to.
struct Result {
  int status = 0;
  std::string output;
  simulator::Microseconds elapsed = 0;
  std::vector<std::string> calls;  // the seam calls, by name, without those that write the reply
  std::string effects;             // what the run did to the Mac, one line each, see effectLine
};

/// How a run is made: inside this process, or as a child of it.
enum class Mode { direct, forked };

/// The mode the environment variable DRIVER_TEST_MODE asks for; direct by default.
Mode modeFromEnvironment();

/// A simulated Mac for one test. When it goes, each invariant that was broken is a failure of the
/// test, with the trace.
class TestMac {
 public:
  /// Parses the world, which must be well-formed.
  explicit TestMac(std::string_view world, std::vector<std::string> faults = {},
                   Mode mode = modeFromEnvironment());
  TestMac(simulator::World world, std::vector<simulator::Fault> faults, Mode mode);
  TestMac(const TestMac&) = delete;
  TestMac& operator=(const TestMac&) = delete;
  ~TestMac();

  /// Runs "driver" with the words of `commandLine`, split at blanks.
  Result driver(std::string_view commandLine, const Environment& environment = {});

  /// The same with the arguments after the tool's path as they stand.
  Result driverWith(const std::vector<std::string>& arguments, const Environment& environment = {});

  /// The same for whatever `run` does as the client it is given; it returns the exit status.
  Result record(const std::vector<std::string>& commandLine, const Environment& environment,
                const std::function<int(std::size_t client)>& run);

  simulator::Desktop& desktop() { return *desktop_; }
  const simulator::Desktop& desktop() const { return *desktop_; }
  const simulator::World& world() const { return desktop_->mac().world; }

  /// The text of an element's value attribute, by its label; a test failure when there is none.
  std::string valueOf(std::string_view application, std::string_view label) const;

  /// Violations are expected: they are given, and no failure when this goes.
  std::vector<std::string> takeViolations();

 private:
  std::unique_ptr<simulator::Desktop> desktop_;
  Mode mode_;
  bool reportViolations_ = true;
};

/// How many messages to applications' elements are among the calls of a run.
std::int64_t messages(const Result& run);

/// The whole of what a caller sees of a run: "STATUS OUTPUT".
std::string seen(const Result& run);

/// A success, and a failure, as `seen` gives them.
std::string success(std::string_view json);
std::string failure(std::string_view message);

}  // namespace testing_support
