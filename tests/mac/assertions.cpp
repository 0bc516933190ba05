// Holds the display awake for a moment, under names of 128 and of 400 characters.
#include <CoreFoundation/CoreFoundation.h>
#include <IOKit/pwr_mgt/IOPMLib.h>

#include <string>
#include <vector>

#include "support/answer.h"

namespace {

/// The status of an assertion with a name of this length.
int statusOf(std::size_t length) {
  const std::vector<UniChar> characters(length, u'a');
  CFStringRef name = CFStringCreateWithCharacters(nullptr, characters.data(),
                                                  static_cast<CFIndex>(characters.size()));
  IOPMAssertionID id = 0;
  const IOReturn status = IOPMAssertionCreateWithName(kIOPMAssertionTypePreventUserIdleDisplaySleep,
                                                      kIOPMAssertionLevelOn, name, &id);
  CFRelease(name);
  return status;
}

}  // namespace

int main(int count, char** words) {
  constexpr std::size_t documentedMax = 128;
  constexpr std::size_t longer = 400;
  const int atLimit = statusOf(documentedMax);
  const int beyond = statusOf(longer);
  const std::string assumption = probe::asked(count, words);
  const probe::Verdict verdict =
      atLimit != 0 ? probe::Verdict::notShown : probe::verdictOf(beyond == 0);
  return probe::answer(
      assumption, verdict,
      probe::Evidence().add("status of 128", atLimit).add("status of 400", beyond));
}
