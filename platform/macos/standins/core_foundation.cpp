#include <CoreFoundation/CoreFoundation.h>

#include <cstring>

#include "platform/macos/standins/objects.h"
#include "platform/macos/standins/strings.h"
#include "platform/macos/utf16.h"

using namespace standins;

namespace {

struct Number : Object {
  explicit Number(std::int64_t value) : Object(Type::number), whole(value), real(double(value)) {}
  Number(bool isFloat, double value) : Object(Type::number), isFloat(isFloat), real(value) {}
  std::string describe() const override {
    return fitsWhole ? std::to_string(whole) : std::to_string(real);
  }
  bool isFloat = false;
  bool fitsWhole = false;
  std::int64_t whole = 0;
  double real = 0;
};

}  // namespace
