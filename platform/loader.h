#pragma once

/// Libraries and symbols looked up at run time.
namespace loader {

/// Opens a library with lazy binding. Null when it cannot be opened. Never closed.
void* openLibrary(const char* path);

/// The address of a symbol that this library or one of its dependencies exports; null when there is
/// none. `name` is the C name. `library` is not null.
void* findSymbol(void* library, const char* name);

/// The same among all libraries that are already loaded.
void* findLoadedSymbol(const char* name);

}  // namespace loader
