#include "support/records.h"

#include <algorithm>
#include <cstring>

#include "support/system.h"

namespace probe {

namespace {

constexpr std::uint8_t recordLength = 0xF8;
constexpr int focusMilliseconds = 40;
constexpr int keyMilliseconds = 300;

Record recordFor(std::uint32_t window, std::uint8_t type) {
  Record record{};
  record[offset::length] = recordLength;
  record[offset::type] = type;
  std::memcpy(record.data() + offset::window, &window, sizeof window);
  return record;
}

}  // namespace

Record focusRecord(std::uint32_t window, bool give) {
  constexpr std::uint8_t applicationDefined = 0x0D;
  Record record = recordFor(window, applicationDefined);
  record[offset::focusChange] = give ? 1 : 2;
  return record;
}

Record keyRecord(std::uint32_t window, std::uint8_t type) {
  Record record = recordFor(window, type);
  record[offset::keyFlag] = 0x10;
  std::fill(record.begin() + offset::windowLocation, record.begin() + offset::windowLocationEnd,
            std::uint8_t{0xFF});
  return record;
}

Record withLocation(Record record, double x, double y) {
  std::memcpy(record.data() + offset::windowLocation, &x, sizeof x);
  std::memcpy(record.data() + offset::windowLocation + sizeof x, &y, sizeof y);
  return record;
}

int post(pid_t pid, Record record) {
  auto process = serialNumber(pid);
  if (!process) return -1;
  return privateFunctions().postRecord(process->data(), record.data());
}

int giveFocus(pid_t pid, std::uint32_t window) {
  const int status = post(pid, focusRecord(window, true));
  sleepMilliseconds(focusMilliseconds);
  return status;
}

int makeKey(pid_t pid, std::uint32_t window) {
  const int pressed = post(pid, keyRecord(window, mouseDownRecord));
  const int released = post(pid, keyRecord(window, mouseUpRecord));
  sleepMilliseconds(keyMilliseconds);
  return pressed != 0 ? pressed : released;
}

}  // namespace probe
