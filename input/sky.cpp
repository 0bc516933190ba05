#include "input/sky.h"

#include <mutex>
#include <optional>
#include <string_view>

#include "main/globals.h"
#include "platform/loader.h"

namespace driver::Sky {

namespace {

constexpr const char* skyLightPath =
    "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";
constexpr const char* appServicesPath =
    "/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices";

// An absence is remembered as well: it is final, and looking again would cost as much each time.
std::optional<void*> knownAddress(const char* name) {
  const std::lock_guard lock(globals().mutex);
  const auto entry = globals().lookedUpAddresses.find(name);
  if (entry == globals().lookedUpAddresses.end()) return std::nullopt;
  return entry->second;
}

/// What `find` gives for this name; it is asked once in a run. Two flows that need it for the first
/// time at once may both ask, and the answer is the same.
template <class Find>
void* lookedUp(const char* name, const Find& find) {
  if (const auto known = knownAddress(name)) return *known;
  void* const address = find();
  const std::lock_guard lock(globals().mutex);
  globals().lookedUpAddresses.emplace(name, address);
  return address;
}

void* skyLight() {
  return lookedUp(skyLightPath, [] { return loader::openLibrary(skyLightPath); });
}

void* appServices() {
  return lookedUp(appServicesPath, [] { return loader::openLibrary(appServicesPath); });
}

template <class Function>
Function sym(void* library, const char* name) {
  if (library == nullptr) return nullptr;
  return reinterpret_cast<Function>(
      lookedUp(name, [&] { return loader::findSymbol(library, name); }));
}

}  // namespace

PostToPid postToPid() { return sym<PostToPid>(skyLight(), "SLEventPostToPid"); }

SetField setField() { return sym<SetField>(skyLight(), "SLEventSetIntegerValueField"); }

SetWindowLocation setWindowLocation() {
  constexpr const char* name = "CGEventSetWindowLocation";
  void* const library = skyLight();
  if (library == nullptr) return nullptr;
  return reinterpret_cast<SetWindowLocation>(lookedUp(name, [&] {
    void* const exported = loader::findSymbol(library, name);
    // CoreGraphics exports it, which need not be among SkyLight's dependencies.
    return exported != nullptr ? exported : loader::findLoadedSymbol(name);
  }));
}

PostRecord postRecord() { return sym<PostRecord>(skyLight(), "SLPSPostEventRecordTo"); }

ProcessForPid processForPid() { return sym<ProcessForPid>(appServices(), "GetProcessForPID"); }

FrontProcess frontProcess() { return sym<FrontProcess>(appServices(), "GetFrontProcess"); }

ProcessPID processPID() { return sym<ProcessPID>(appServices(), "GetProcessPID"); }

AxGetWindow axGetWindow() { return sym<AxGetWindow>(appServices(), "_AXUIElementGetWindow"); }

}  // namespace driver::Sky
