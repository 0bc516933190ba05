#include "platform/loader.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/simulated/channel.h"

/// What the simulated loader hands out for the private symbols, with the signatures of the real
/// ones.
namespace simulated {

using platform::EventImage;
using platform::Function;
using platform::Pid;
using platform::SerialNumber;

namespace {

constexpr std::size_t recordLength = 248;

struct Serial {
  std::int64_t status = 0;
  std::uint32_t high = 0;
  std::uint32_t low = 0;
};

Serial unpackSerial(const driver::Datum& datum) {
  const auto parts = driver::unpack<std::vector<std::int64_t>>(datum);
  if (parts.size() != 3) throw driver::MalformedDatum();
  return {parts[0], static_cast<std::uint32_t>(parts[1]), static_cast<std::uint32_t>(parts[2])};
}

void postToPid(Pid pid, void* event) {
  ask(Function::privatePost, pid, *static_cast<EventImage*>(event));
}

void setIntegerField(void* event, std::uint32_t field, std::int64_t value) {
  static_cast<EventImage*>(event)->privateFields.push_back({field, value});
}

void setWindowLocation(void* event, double x, double y) {
  static_cast<EventImage*>(event)->windowLocation = platform::Point{x, y};
}

std::int32_t postRecord(SerialNumber* serial, std::uint8_t* record) {
  const std::string bytes(reinterpret_cast<const char*>(record), recordLength);
  return askFor<std::int32_t>(Function::postRecord, serial->high, serial->low, bytes);
}

std::int32_t processForPid(Pid pid, SerialNumber* serial) {
  const Serial answer = unpackSerial(ask(Function::processForPid, pid));
  if (answer.status == 0) *serial = {answer.high, answer.low};
  return static_cast<std::int32_t>(answer.status);
}

std::int16_t frontProcess(SerialNumber* serial) {
  const Serial answer = unpackSerial(ask(Function::frontProcess));
  if (answer.status == 0) *serial = {answer.high, answer.low};
  return static_cast<std::int16_t>(answer.status);
}

std::int32_t processPid(const SerialNumber* serial, Pid* pid) {
  const Serial answer = unpackSerial(ask(Function::processPid, serial->high, serial->low));
  if (answer.status == 0) *pid = static_cast<Pid>(answer.low);
  return static_cast<std::int32_t>(answer.status);
}

std::int32_t axGetWindow(void* element, std::uint32_t* window) {
  const Serial answer =
      unpackSerial(ask(Function::axGetWindow, *static_cast<platform::ElementReference*>(element)));
  if (answer.status == 0) *window = answer.low;
  return static_cast<std::int32_t>(answer.status);
}

std::int32_t lockScreen() { return askFor<std::int32_t>(Function::lockScreen); }

struct Symbol {
  std::string_view name;
  void* address;
};

template <class Result, class... Arguments>
void* addressOf(Result (*function)(Arguments...)) {
  return reinterpret_cast<void*>(function);
}

}  // namespace

void* privateFunction(const std::string& name) {
  const std::array<Symbol, 9> symbols = {{
      {"SLEventPostToPid", addressOf(postToPid)},
      {"SLEventSetIntegerValueField", addressOf(setIntegerField)},
      {"CGEventSetWindowLocation", addressOf(setWindowLocation)},
      {"SLPSPostEventRecordTo", addressOf(postRecord)},
      {"GetProcessForPID", addressOf(processForPid)},
      {"GetFrontProcess", addressOf(frontProcess)},
      {"GetProcessPID", addressOf(processPid)},
      {"_AXUIElementGetWindow", addressOf(axGetWindow)},
      {"SACLockScreenImmediate", addressOf(lockScreen)},
  }};
  for (const Symbol& symbol : symbols) {
    if (symbol.name == name) return symbol.address;
  }
  return nullptr;
}

}  // namespace simulated

namespace loader {

using platform::Function;
using simulated::ask;
using simulated::askFor;

// A library's handle is the number the simulated Mac gives it.
void* openLibrary(const char* path) {
  const auto number = ask(Function::openLibrary, path);
  if (number.isNothing()) return nullptr;
  return reinterpret_cast<void*>(driver::unpack<std::intptr_t>(number));
}

void* findSymbol(void* library, const char* name) {
  const auto number = reinterpret_cast<std::intptr_t>(library);
  if (!askFor<bool>(Function::findSymbol, number, name)) return nullptr;
  return simulated::privateFunction(name);
}

void* findLoadedSymbol(const char* name) {
  if (!askFor<bool>(Function::findLoadedSymbol, name)) return nullptr;
  return simulated::privateFunction(name);
}

}  // namespace loader
