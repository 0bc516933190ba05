#include "tests/fuzz/targets.h"

#include <algorithm>
#include <array>

#include "tests/fuzz/mac_socket.h"
#include "tests/fuzz/request_lines.h"
#include "tests/fuzz/runs.h"
#include "tests/fuzz/worlds.h"

namespace fuzz {

namespace {

constexpr std::array allTargets = {
    Target{"arguments", complaintAboutArguments}, Target{"guard-input", complaintAboutGuardInput},
    Target{"photo", complaintAboutPhoto},         Target{"request-lines", complaintAboutLines},
    Target{"service", complaintAboutService},     Target{"socket", complaintAboutSocket},
    Target{"world", complaintAboutWorld},
};

}  // namespace

std::span<const Target> targets() { return allTargets; }

const Target* targetNamed(std::string_view name) {
  const auto* const found = std::find_if(allTargets.begin(), allTargets.end(),
                                         [&](const Target& each) { return each.name == name; });
  return found == allTargets.end() ? nullptr : found;
}

}  // namespace fuzz
