#include "platform/macos/standins/taps.h"

#include <unistd.h>

#include <algorithm>
#include <string>
#include <vector>

#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

constexpr CGEventMask keys = CGEventMaskBit(kCGEventKeyDown) | CGEventMaskBit(kCGEventKeyUp);

struct System {
  bool refuses = false;
  bool permitsKeys = true;
  bool hidesTaps = false;
  CFMachPortRef newest = nullptr;
};

System& system() {
  static System system;
  return system;
}

struct Port : Object {
  Port(CGEventTapInformation information, CGEventTapCallBack callback, void* userInfo)
      : Object(Type::machPort), information(information), callback(callback), userInfo(userInfo) {}
  std::string describe() const override { return "tap"; }
  CGEventTapInformation information;
  CGEventTapCallBack callback;
  void* userInfo;
};

struct RunLoopSource : Object {
  explicit RunLoopSource(CFMachPortRef port) : Object(Type::runLoopSource) {
    owned = {CFRetain(port)};
  }
  std::string describe() const override { return "source of " + standins::describe(owned.at(0)); }
};

// The taps of other processes see everything; that of this one, what it was given.
std::vector<CGEventTapInformation> taps() {
  CGEventTapInformation stranger = {};
  stranger.tapPoint = kCGSessionEventTap;
  stranger.eventsOfInterest = ~CGEventMask{0};
  stranger.tappingProcess = getpid() + 1;
  CGEventTapInformation listening = stranger;
  listening.options = kCGEventTapOptionListenOnly;
  return {stranger, as<Port>(system().newest)->information, listening};
}

CGEventMask granted(CGEventMask wanted) { return system().permitsKeys ? wanted : wanted & ~keys; }

}  // namespace

void refuseTaps(bool refuse) { system().refuses = refuse; }

void permitKeys(bool permit) { system().permitsKeys = permit; }

void hideTaps(bool hide) { system().hidesTaps = hide; }

CGEventRef sendThroughTap(CGEventType type, CGEventRef event) {
  const Port* port = as<Port>(system().newest);
  auto* proxy = reinterpret_cast<CGEventTapProxy>(&system());
  return port->callback(proxy, type, event, port->userInfo);
}

}  // namespace standins

using namespace standins;

const CFRunLoopMode kCFRunLoopCommonModes = CFSTR("common modes");

CFMachPortRef CGEventTapCreate(CGEventTapLocation tap, CGEventTapPlacement place,
                               CGEventTapOptions options, CGEventMask eventsOfInterest,
                               CGEventTapCallBack callback, void* userInfo) {
  record("create tap at " + std::to_string(tap) + " place " + std::to_string(place) + " options " +
         std::to_string(options) + " mask " + std::to_string(eventsOfInterest));
  if (system().refuses) return nullptr;
  CGEventTapInformation information = {};
  information.tapPoint = tap;
  information.options = options;
  information.eventsOfInterest = granted(eventsOfInterest);
  information.tappingProcess = getpid();
  information.enabled = true;
  system().newest =
      reinterpret_cast<CFMachPortRef>(entered(new Port(information, callback, userInfo)));
  return system().newest;
}

void CGEventTapEnable(CFMachPortRef tap, bool enable) {
  record(enable ? "enable" : "disable");
  as<Port>(tap)->information.enabled = enable;
}

CGError CGGetEventTapList(uint32_t maxNumberOfTaps, CGEventTapInformation* tapList,
                          uint32_t* eventTapCount) {
  if (system().hidesTaps) return CGError(-1);
  const std::vector<CGEventTapInformation> all = taps();
  *eventTapCount = static_cast<uint32_t>(all.size());
  if (tapList == nullptr) return kCGErrorSuccess;
  *eventTapCount = std::min(maxNumberOfTaps, *eventTapCount);
  std::copy_n(all.begin(), *eventTapCount, tapList);
  return kCGErrorSuccess;
}

CFRunLoopRef CFRunLoopGetMain() {
  static char mainLoop = 0;
  return reinterpret_cast<CFRunLoopRef>(&mainLoop);
}

CFRunLoopSourceRef CFMachPortCreateRunLoopSource(CFAllocatorRef, CFMachPortRef port, CFIndex) {
  return reinterpret_cast<CFRunLoopSourceRef>(entered(new RunLoopSource(port)));
}

// The run loop holds what it serves.
void CFRunLoopAddSource(CFRunLoopRef rl, CFRunLoopSourceRef source, CFRunLoopMode mode) {
  if (rl != CFRunLoopGetMain()) noteMistake("another run loop than the main one");
  record("serve " + describe(source) + " in " + describe(mode));
  CFRetain(source);
  keep(source);
}
