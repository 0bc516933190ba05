#include "support/system.h"

#include <dlfcn.h>
#include <unistd.h>

namespace probe {

namespace {

constexpr const char* skyLightPath =
    "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";
constexpr const char* servicesPath =
    "/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices";

template <class Function>
void find(Function& function, void* library, const char* name) {
  void* address = library == nullptr ? nullptr : dlsym(library, name);
  if (address == nullptr) address = dlsym(RTLD_DEFAULT, name);
  function = reinterpret_cast<Function>(address);
}

PrivateFunctions lookUp() {
  void* const skyLight = dlopen(skyLightPath, RTLD_LAZY);
  void* const services = dlopen(servicesPath, RTLD_LAZY);
  PrivateFunctions functions{};
  find(functions.postToPid, skyLight, "SLEventPostToPid");
  find(functions.setField, skyLight, "SLEventSetIntegerValueField");
  find(functions.setWindowLocation, skyLight, "CGEventSetWindowLocation");
  find(functions.postRecord, skyLight, "SLPSPostEventRecordTo");
  find(functions.processForPid, services, "GetProcessForPID");
  find(functions.frontProcess, services, "GetFrontProcess");
  find(functions.pidOfProcess, services, "GetProcessPID");
  find(functions.windowOfElement, services, "_AXUIElementGetWindow");
  return functions;
}

CFArrayRef windowList(CGWindowListOption option, std::uint32_t window) {
  return CGWindowListCopyWindowInfo(option, window);
}

double number(CFDictionaryRef dictionary, CFStringRef key) {
  double value = 0;
  const auto found = static_cast<CFNumberRef>(CFDictionaryGetValue(dictionary, key));
  if (found != nullptr) CFNumberGetValue(found, kCFNumberDoubleType, &value);
  return value;
}

}  // namespace

bool PrivateFunctions::isComplete() const {
  return postToPid != nullptr && setField != nullptr && setWindowLocation != nullptr &&
         postRecord != nullptr && processForPid != nullptr && frontProcess != nullptr &&
         pidOfProcess != nullptr && windowOfElement != nullptr;
}

const PrivateFunctions& privateFunctions() {
  static const PrivateFunctions functions = lookUp();
  return functions;
}

std::optional<SerialNumber> serialNumber(pid_t pid) {
  SerialNumber process{};
  if (privateFunctions().processForPid(pid, process.data()) != 0) return std::nullopt;
  return process;
}

pid_t frontPid() {
  SerialNumber process{};
  pid_t pid = 0;
  if (privateFunctions().frontProcess(process.data()) != 0) return 0;
  return privateFunctions().pidOfProcess(process.data(), &pid) == 0 ? pid : 0;
}

CGPoint pointer() {
  CGEventRef event = CGEventCreate(nullptr);
  const CGPoint point = CGEventGetLocation(event);
  CFRelease(event);
  return point;
}

std::optional<CGRect> windowBounds(std::uint32_t window) {
  CFArrayRef list = windowList(kCGWindowListOptionIncludingWindow, window);
  if (list == nullptr) return std::nullopt;
  std::optional<CGRect> result;
  if (CFArrayGetCount(list) == 1) {
    const auto entry = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, 0));
    const auto bounds = static_cast<CFDictionaryRef>(CFDictionaryGetValue(entry, kCGWindowBounds));
    if (bounds != nullptr) {
      result = CGRect{{number(bounds, CFSTR("X")), number(bounds, CFSTR("Y"))},
                      {number(bounds, CFSTR("Width")), number(bounds, CFSTR("Height"))}};
    }
  }
  CFRelease(list);
  return result;
}

long long placeOnScreen(std::uint32_t window) {
  CFArrayRef list = windowList(kCGWindowListOptionOnScreenOnly, kCGNullWindowID);
  if (list == nullptr) return -1;
  long long place = -1;
  for (CFIndex index = 0; place < 0 && index < CFArrayGetCount(list); ++index) {
    const auto entry = static_cast<CFDictionaryRef>(CFArrayGetValueAtIndex(list, index));
    if (number(entry, kCGWindowNumber) == window) place = index;
  }
  CFRelease(list);
  return place;
}

bool isOnScreen(std::uint32_t window) { return placeOnScreen(window) >= 0; }

void sleepMilliseconds(int milliseconds) {
  constexpr useconds_t microseconds = 1'000;
  usleep(static_cast<useconds_t>(milliseconds) * microseconds);
}

void runLoop(double seconds) { CFRunLoopRunInMode(kCFRunLoopDefaultMode, seconds, false); }

std::optional<std::string> missingForElements() {
  if (!AXIsProcessTrusted()) return "Accessibility is not granted";
  if (!privateFunctions().isComplete()) return "a private function is missing";
  return std::nullopt;
}

}  // namespace probe
