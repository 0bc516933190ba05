#pragma once

#include "simulator/world/world.h"

/// The panels that the system's service shows for applications that open and save files.
namespace simulator {

enum class PanelKind { open, save };

/// The service whose panels lie over a window of the application; null when there is none.
const PanelService* panelFor(const World& world, Pid pid);

/// Its panel comes up over its window: for saving with a name field that has the keyboard, for
/// opening without. False when that window has gone, or one is there already.
bool showPanel(World& world, const PanelService& service, PanelKind kind);

namespace reactions {

ReactionEffect openPanel;  // that for opening files comes up over a window of the application
ReactionEffect savePanel;  // that for saving does

}  // namespace reactions

}  // namespace simulator
