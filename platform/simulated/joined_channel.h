#pragma once

#include <memory>
#include <string>

#include "platform/call.h"

namespace simulated {

/// Joins the simulated Mac that listens at this socket. When there is none the process ends with
/// one line of JSON that says so, status 1. So it does when the Mac goes away later.
std::unique_ptr<platform::Channel> joinMac(const std::string& socketPath);

}  // namespace simulated
