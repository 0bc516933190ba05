// Makes taps for keys alone, in processes of their own: as they are started, and prohibited from
// becoming active before or after the tap is made, or by a property list from the start. Each posts
// F20, which does nothing, into the session, and says whether its tap was told.
#import <AppKit/AppKit.h>

#include <array>
#include <cstdio>
#include <string>

#include "support/answer.h"
#include "support/system.h"
#include "support/taps.h"

namespace {

using probe::Evidence;

constexpr double waitSeconds = 0.7;
constexpr std::int64_t tag = 0x6D616373;

struct Mode {
  const char* name;
  bool listens;
  bool prohibitedBefore;
  bool prohibitedAfter;
};

constexpr std::array<Mode, 6> modes = {{
    {"listening", true, false, false},
    {"filtering", false, false, false},
    {"listening, prohibited before", true, true, false},
    {"filtering, prohibited before", false, true, false},
    {"listening, prohibited after", true, false, true},
    {"filtering, prohibited after", false, false, true},
}};

void prohibit() {
  [NSApplication.sharedApplication setActivationPolicy:NSApplicationActivationPolicyProhibited];
}

/// The same program with a property list that makes it background-only; built beside this one.
constexpr const char* backgroundOnly = "_background_only";
constexpr std::array<std::size_t, 2> plainModes = {0, 1};

/// One mode in this process: "made enabled told".
int runMode(const Mode& mode) {
  CGMainDisplayID();
  if (mode.prohibitedBefore) prohibit();
  probe::Tap tap(mode.listens ? kCGEventTapOptionListenOnly : kCGEventTapOptionDefault,
                 probe::keyMask);
  if (mode.prohibitedAfter) prohibit();
  long long told = 0;
  if (tap.isMade()) {
    tap.eventsWithin(waitSeconds / 2);
    probe::postIdleKey(tag);
    for (const probe::SeenEvent& each : tap.eventsWithin(waitSeconds)) told += each.tag == tag;
  }
  std::printf("%d %d %lld\n", tap.isMade(), tap.isEnabled(), told);
  return 0;
}

struct Result {
  int made = 0;
  int enabled = 0;
  int told = 0;
};

Result resultOf(const std::string& program, std::size_t mode) {
  Result result;
  const std::string command = "'" + program + "' mode " + std::to_string(mode);
  FILE* const output = popen(command.c_str(), "r");
  if (output == nullptr) return result;
  if (std::fscanf(output, "%d %d %d", &result.made, &result.enabled, &result.told) != 3)
    result = {};
  pclose(output);
  return result;
}

std::string shown(const Result& result) {
  return std::string(result.made != 0 ? "made" : "not made") +
         (result.enabled != 0 ? ", enabled" : ", not enabled") + ", told " +
         std::to_string(result.told) + " of 2";
}

bool works(const Result& result) {
  return result.made != 0 && result.enabled != 0 && result.told == 2;
}

int answerForAccess(const std::string& assumption) {
  const bool listens = CGPreflightListenEventAccess();
  const bool posts = CGPreflightPostEventAccess();
  const probe::Verdict verdict =
      AXIsProcessTrusted() ? probe::verdictOf(listens && posts) : probe::Verdict::notShown;
  return probe::answer(assumption, verdict,
                       Evidence()
                           .add("Accessibility", AXIsProcessTrusted() != 0)
                           .add("listening to events allowed", listens)
                           .add("posting events allowed", posts));
}

int answerFor(const std::string& assumption, const std::string& program) {
  if (assumption == "event-access") return answerForAccess(assumption);
  const bool wantsProhibited = assumption == "key-taps-of-prohibited-processes";
  if (!wantsProhibited && assumption != "key-taps")
    return probe::notShown(assumption, "it is not asked here");
  Evidence evidence;
  evidence.add("Accessibility", AXIsProcessTrusted() != 0)
      .add("listening to events allowed", CGPreflightListenEventAccess())
      .add("posting events allowed", CGPreflightPostEventAccess());
  bool holds = true;
  bool plainHolds = true;
  for (std::size_t index = 0; index < modes.size(); ++index) {
    const Mode& mode = modes[index];
    const Result result = resultOf(program, index);
    evidence.add(mode.name, shown(result));
    const bool isProhibited = mode.prohibitedBefore || mode.prohibitedAfter;
    if (isProhibited == wantsProhibited) holds = holds && works(result);
    if (!isProhibited) plainHolds = plainHolds && works(result);
  }
  // Told and not judged: driver is no such program.
  for (const std::size_t index : plainModes)
    evidence.add(std::string(modes[index].name) + ", background-only",
                 shown(resultOf(program + backgroundOnly, index)));
  if (!AXIsProcessTrusted() || (wantsProhibited && !plainHolds))
    return probe::answer(assumption, probe::Verdict::notShown, evidence);
  return probe::answer(assumption, probe::verdictOf(holds), evidence);
}

}  // namespace

int main(int count, char** words) {
  @autoreleasepool {
    const std::string assumption = probe::asked(count, words);
    if (assumption != "mode") return answerFor(assumption, words[0]);
    return runMode(modes[static_cast<std::size_t>(std::stoi(words[2]))]);
  }
}
