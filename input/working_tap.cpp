#include "input/working_tap.h"

#include <utility>

#include "platform/quartz.h"

namespace driver {

// The system may take the keys out of a mask that has others too, but it gives no tap of which
// nothing is left.
bool makeWorkingTap(std::optional<tap::Tap>& made, tap::Place place, tap::Kind kind,
                    std::uint64_t mask, tap::Handler handler) {
  if (!tap::canBeMade(kind, tap::maskOf(quartz::EventType::keyDown))) return false;
  made = tap::create(place, kind, mask, std::move(handler));
  if (!made) return false;
  tap::attach(*made);
  tap::enable(*made);
  return tap::isEnabled(*made);
}

}  // namespace driver
