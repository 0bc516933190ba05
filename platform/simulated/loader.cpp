#include "platform/loader.h"

#include <cstdint>

#include "platform/simulated/channel.h"

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
