#include "input/sky.h"

#include <string_view>

#include "main/globals.h"
#include "platform/loader.h"

namespace driver::Sky {

namespace {

constexpr const char* skyLightPath =
    "/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight";
constexpr const char* appServicesPath =
    "/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices";

/// What `find` gives for this name; it is asked once in a run.
template <class Find>
void* lookedUp(const char* name, const Find& find) {
  auto& known = globals().lookedUpAddresses;
  const auto entry = known.find(name);
  if (entry != known.end()) return entry->second;
  void* const address = find();
  known.emplace(name, address);
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
