#pragma once

#include "simulator/mac/mac.h"

namespace simulator {

/// What a happening means to the processes that use the Mac. Those that have gone take no notice.
void happenToClients(Mac& mac, const Happening& happening);

}  // namespace simulator
