#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/support/channels.h"
#include "tests/support/simulated_run.h"

/// The capture service inside this process, with its input known from the start.
namespace testing_support {

/// How a service is run.
struct Service {
  Environment environment;
  Schedule schedule;
  bool closesInput = true;          // after the lines
  std::optional<std::string> lock;  // the lock's path; a private one otherwise
};

/// Runs "capture-service" on these request lines.
Result serve(TestMac& mac, const std::vector<std::string>& lines, const Service& service = {});

/// Request lines.
std::string openLine(const std::string& session, const std::string& app);
std::string sessionLine(const std::string& op, const std::string& session);
std::string commandLine(const std::string& session, const std::string& arguments);

/// What a service that ended with `status` has written: its start line, then these.
std::string served(int status, const std::vector<std::string>& replies);

/// The same for one whose last line, after these, is a failure.
std::string failedService(std::vector<std::string> replies, const std::string& message);

}  // namespace testing_support
