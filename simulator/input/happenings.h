#pragma once

#include <cstdint>
#include <vector>

#include "platform/wire.h"
#include "simulator/mac/mac.h"

/// What happens to the Mac and to the processes that use it, where that takes more than a line.
/// Processes that have gone take no notice.
namespace simulator {

/// The processes that use the Mac and have not gone. Borrowed from it.
std::vector<Client*> living(Mac& mac);

/// An application stops answering, or answers again.
void setHanging(Mac& mac, Pid pid, bool hangs);

/// A process gets the signal: as news when it handles it, else it dies of it. And each process that
/// uses the Mac does.
void signalProcess(const Mac& mac, Client& client, int number);
void signalProcesses(Mac& mac, int number);

/// The main flow of each process that uses the Mac finds this among what waits for it.
void tellProcesses(Mac& mac, platform::ItemKind kind);

/// The permission for Accessibility is withdrawn, and with it that for taps.
void withdrawAccessibility(Mac& mac);

// Processes learn that the screens have changed. The system moves the panels of a display that
// goes: onto the first that is left, or somewhere else where they are when none is.
void removeDisplays(Mac& mac);
/// A new one, or another size and place of the one with its number.
void connectDisplay(Mac& mac, const Display& display);
void disconnectDisplay(Mac& mac, std::uint32_t number);
/// A display goes and is back at once, with the frame that it had.
void replugDisplay(Mac& mac, std::uint32_t number);

}  // namespace simulator
