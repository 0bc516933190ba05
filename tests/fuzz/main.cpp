#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/fuzz/targets.h"

/// libFuzzer makes the inputs; the variable DRIVER_FUZZ_TARGET says what takes them.
namespace {

const fuzz::Target& chosen() {
  const char* name = std::getenv("DRIVER_FUZZ_TARGET");
  const fuzz::Target* target = name == nullptr ? nullptr : fuzz::targetNamed(name);
  if (target == nullptr) {
    std::fprintf(stderr, "DRIVER_FUZZ_TARGET is to be one of:");
    for (const fuzz::Target& each : fuzz::targets()) {
      std::fprintf(stderr, " %s", std::string(each.name).c_str());
    }
    std::fprintf(stderr, "\n");
    std::exit(2);
  }
  return *target;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fuzz::Target& target = chosen();
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::string complaint = target.complaint(input);
  if (!complaint.empty()) {
    std::fprintf(stderr, "wrong: %s\n", complaint.c_str());
    std::abort();
  }
  return 0;
}
