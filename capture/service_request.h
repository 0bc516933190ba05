#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/value.h"
#include "capture/commands.h"
#include "main/arguments.h"

/// What a client of the capture service asks for. Nothing here asks the platform but for its JSON
/// parser and lower-casing.
namespace driver {

/// One request line. Keys that nobody asks for are ignored.
struct ServiceRequest {
  std::string op;
  std::string session;
  Value::Object entries;  // all, those two included
};

/// None when the line is no UTF-8 or holds something else than an object with these texts. Throws
/// PlatformError when it is no JSON.
std::optional<ServiceRequest> parseServiceRequest(std::string_view line);

/// The application to open a session for; none when it is no text.
std::optional<std::string> appOf(const ServiceRequest& request);

/// The window scope of the session to open, lower-cased; none when there is none.
std::optional<std::string> scopeOf(const ServiceRequest& request);

/// What a session is to run.
struct SharedCommand {
  const CaptureCommand* command = nullptr;  // a row of the table
  Arguments words;                          // the command line without the tool's own path
};

/// The command to run; none unless it is one that a session of `app` may run, on that application.
std::optional<SharedCommand> sharedCommandOf(const ServiceRequest& request, const std::string& app);

}  // namespace driver
