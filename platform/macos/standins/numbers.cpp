#include <cmath>

#include "platform/macos/standins/collections.h"
#include "platform/macos/standins/objects.h"

namespace standins {

namespace {

struct Number : Object {
  Number(bool isFloat, bool isExact, std::int64_t whole, double real)
      : Object(Type::number), isFloat(isFloat), isExact(isExact), whole(whole), real(real) {}
  std::string describe() const override {
    return isFloat ? std::to_string(real) : std::to_string(whole);
  }
  bool isFloat;
  bool isExact;  // as a whole number
  std::int64_t whole;
  double real;
};

struct Truth : Object {
  explicit Truth(bool value) : Object(Type::boolean), value(value) {}
  std::string describe() const override { return value ? "true" : "false"; }
  bool value;
};

CFNumberRef made(bool isFloat, bool isExact, std::int64_t whole, double real) {
  return reinterpret_cast<CFNumberRef>(entered(new Number(isFloat, isExact, whole, real)));
}

CFBooleanRef permanent(bool value) { return reinterpret_cast<CFBooleanRef>(new Truth(value)); }

}  // namespace

CFNumberRef number(std::int64_t value) { return made(false, true, value, double(value)); }

CFNumberRef number(double value) { return made(true, false, 0, value); }

CFNumberRef hugeNumber() { return made(false, false, INT64_MAX, 0x1p63); }

CFTypeRef boolean(bool value) { return value ? kCFBooleanTrue : kCFBooleanFalse; }

}  // namespace standins

using namespace standins;

const CFBooleanRef kCFBooleanTrue = permanent(true);
const CFBooleanRef kCFBooleanFalse = permanent(false);

CFTypeID CFBooleanGetTypeID() { return CFTypeID(Type::boolean); }
CFTypeID CFNumberGetTypeID() { return CFTypeID(Type::number); }

Boolean CFBooleanGetValue(CFBooleanRef boolean) { return as<Truth>(boolean)->value; }

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType theType, const void* valuePtr) {
  if (theType == kCFNumberSInt64Type) return number(*static_cast<const std::int64_t*>(valuePtr));
  return number(*static_cast<const double*>(valuePtr));
}

Boolean CFNumberIsFloatType(CFNumberRef number) { return as<Number>(number)->isFloat; }

// Gives the nearest value in any case, and tells whether it is the exact one.
Boolean CFNumberGetValue(CFNumberRef number, CFNumberType theType, void* valuePtr) {
  const Number* content = as<Number>(number);
  if (theType == kCFNumberSInt64Type) {
    *static_cast<std::int64_t*>(valuePtr) = content->whole;
    return content->isExact;
  }
  *static_cast<double*>(valuePtr) = content->real;
  return content->isFloat || !content->isExact ||
         static_cast<std::int64_t>(content->real) == content->whole;
}
