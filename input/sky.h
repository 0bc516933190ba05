#pragma once

#include <cstdint>

#include "platform/types.h"

/// Entry points that no framework declares. Each is looked up at its first use, once per run, and
/// is null when this system does not have it: a caller says so, and goes no other way. Events and
/// elements are the platform's own pointers, borrowed.
namespace driver::Sky {

using PostToPid = void (*)(platform::Pid pid, void* event);
using SetField = void (*)(void* event, std::uint32_t field, std::int64_t value);
using SetWindowLocation = void (*)(void* event, double x, double y);
using PostRecord = std::int32_t (*)(platform::SerialNumber* process, std::uint8_t* record);
using ProcessForPid = std::int32_t (*)(platform::Pid pid, platform::SerialNumber* process);
using FrontProcess = std::int16_t (*)(platform::SerialNumber* process);
using ProcessPID = std::int32_t (*)(const platform::SerialNumber* process, platform::Pid* pid);
using AxGetWindow = std::int32_t (*)(void* element, platform::WindowNumber* number);

/// Posts an event to one process by the private route.
PostToPid postToPid();

/// Sets event fields that the public setter refuses.
SetField setField();

/// Sets the window-relative location of a mouse event.
SetWindowLocation setWindowLocation();

/// Posts a 248-byte event record to a process. The record's buffer has 256 bytes.
PostRecord postRecord();

/// The serial number of a process. Returns a status.
ProcessForPid processForPid();

/// The serial number of the front process. Returns a status.
FrontProcess frontProcess();

/// The process id for a serial number. Returns a status.
ProcessPID processPID();

/// The window-server number of a window element. Returns an accessibility error code.
AxGetWindow axGetWindow();

}  // namespace driver::Sky
