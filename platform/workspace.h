#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/types.h"

/// Running applications.
namespace workspace {

/// A running application as it was when asked for.
struct Application {
  platform::Pid pid = 0;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> name;        // localised
  std::optional<std::string> bundlePath;  // of the bundle's folder, without a trailing slash
  bool active = false;
  bool hidden = false;
};

enum class ActivationPolicy { regular = 0, accessory = 1, prohibited = 2 };

/// The application with this process id.
std::optional<Application> application(platform::Pid pid);

/// The applications with exactly this bundle identifier, in the platform's order.
std::vector<Application> applications(const std::string& bundleIdentifier);

/// All running applications, in the workspace's order.
std::vector<Application> applications();

/// The frontmost application.
std::optional<Application> frontmost();

/// Asks a hidden application to show itself again, without activating it. It does so some time
/// later. False when the system did not pass the request on.
bool unhide(platform::Pid pid);

/// The activation policy of a running application; none when the process is no application.
std::optional<ActivationPolicy> activationPolicy(platform::Pid pid);

/// True when this application has ended, as far as the workspace knows.
bool terminated(platform::Pid pid);

/// Makes this process an application that can never become active and has no place in the Dock.
void prohibitOwnActivation();

}  // namespace workspace
