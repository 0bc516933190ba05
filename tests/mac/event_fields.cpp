// Writes fields of an event with the private setter and with the public one, and reads them back.
// Nothing is posted.
#include <CoreGraphics/CoreGraphics.h>
#include <dlfcn.h>

#include <array>
#include <cstdint>
#include <string>

#include "support/answer.h"

namespace {

using SetField = void (*)(CGEventRef event, std::uint32_t field, std::int64_t value);

constexpr std::array<std::uint32_t, 9> fields = {0, 1, 3, 7, 40, 51, 58, 91, 92};
constexpr std::int64_t value = 3;

CGEventRef newEvent() {
  return CGEventCreateMouseEvent(nullptr, kCGEventLeftMouseDown, {10, 10}, kCGMouseButtonLeft);
}

std::int64_t read(CGEventRef event, std::uint32_t field) {
  return CGEventGetIntegerValueField(event, static_cast<CGEventField>(field));
}

/// Whether the private setter's value is read back from the field, and whether the public one's is.
struct Kept {
  bool privately;
  bool publicly;
};

Kept keptIn(std::uint32_t field, SetField setPrivately) {
  CGEventRef first = newEvent();
  setPrivately(first, field, value);
  CGEventRef second = newEvent();
  CGEventSetIntegerValueField(second, static_cast<CGEventField>(field), value);
  const Kept kept = {read(first, field) == value, read(second, field) == value};
  CFRelease(first);
  CFRelease(second);
  return kept;
}

}  // namespace

int main(int count, char** words) {
  const std::string assumption = probe::asked(count, words);
  void* const skyLight =
      dlopen("/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight", RTLD_LAZY);
  const auto set = reinterpret_cast<SetField>(
      skyLight == nullptr ? nullptr : dlsym(skyLight, "SLEventSetIntegerValueField"));
  if (set == nullptr) return probe::notShown(assumption, "SLEventSetIntegerValueField is missing");
  probe::Evidence evidence;
  bool complete = true;
  bool publicRefuses = false;
  for (const std::uint32_t field : fields) {
    const Kept kept = keptIn(field, set);
    evidence.add("field " + std::to_string(field),
                 std::string(kept.privately ? "private kept" : "private lost") +
                     (kept.publicly ? ", public kept" : ", public lost"));
    complete = complete && kept.privately;
    publicRefuses = publicRefuses || (kept.privately && !kept.publicly);
  }
  evidence.add("the public setter refuses one that the private one takes", publicRefuses);
  // That the public one suffices as well would refute nothing that driver does.
  return probe::answer(assumption, probe::verdictOf(complete), evidence);
}
