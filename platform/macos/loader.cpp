#include "platform/loader.h"

#include <dlfcn.h>

namespace loader {

void* openLibrary(const char* path) { return dlopen(path, RTLD_LAZY); }

void* findSymbol(void* library, const char* name) { return dlsym(library, name); }

void* findLoadedSymbol(const char* name) { return dlsym(RTLD_DEFAULT, name); }

}  // namespace loader
