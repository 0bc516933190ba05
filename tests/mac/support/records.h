#pragma once

#include <sys/types.h>

#include <array>
#include <cstdint>

namespace probe {

/// An event record as driver posts it: 248 bytes, and zeros up to 256.
using Record = std::array<std::uint8_t, 256>;

namespace offset {
constexpr int length = 0x04;
constexpr int type = 0x08;
constexpr int windowLocation = 0x20;
constexpr int windowLocationEnd = 0x30;
constexpr int keyFlag = 0x3A;
constexpr int window = 0x3C;
constexpr int focusChange = 0x8A;
}  // namespace offset

constexpr std::uint8_t mouseDownRecord = 1;
constexpr std::uint8_t mouseUpRecord = 2;

/// Gives a process its focus, or takes it.
Record focusRecord(std::uint32_t window, bool give);

/// The press, or the release, that makes a window key.
Record keyRecord(std::uint32_t window, std::uint8_t type);

/// The same with another location, two doubles.
Record withLocation(Record record, double x, double y);

/// Posts a record. Its status; -1 when the process has no serial number.
int post(pid_t pid, Record record);

/// Gives focus for the window, and waits as driver does.
int giveFocus(pid_t pid, std::uint32_t window);

/// Makes the window key by the prescribed pair, and waits as driver does.
int makeKey(pid_t pid, std::uint32_t window);

}  // namespace probe
