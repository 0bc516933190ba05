#pragma once

#include "main/arguments.h"

/// The commands that read and operate elements of other applications. Each takes a command line of
/// the right length and writes one reply.
namespace driver {

/// "ax-list", "ax-dump": what an application's windows hold.
void axListCommand(const Arguments& arguments);
void axDumpCommand(const Arguments& arguments);

/// "ax-find-text", "ax-texts-at": where texts are, and which are at a point.
void axFindTextCommand(const Arguments& arguments);
void axTextsAtCommand(const Arguments& arguments);

/// "ax-at", "ax-press": the control at a point.
void axAtCommand(const Arguments& arguments);
void axPressCommand(const Arguments& arguments);

/// "ax-match", "ax-press-match": the control that a label describes, near a point.
void axMatchCommand(const Arguments& arguments);
void axPressMatchCommand(const Arguments& arguments);

/// "ax-press-exact", "ax-press-child", "ax-press-in-document": presses that refuse to guess.
void axPressExactCommand(const Arguments& arguments);
void axPressChildCommand(const Arguments& arguments);
void axPressInDocumentCommand(const Arguments& arguments);

/// "ax-insert", "ax-set-value": text into fields.
void axInsertCommand(const Arguments& arguments);
void axSetValueCommand(const Arguments& arguments);

/// "ax-focus", "ax-focused": the keyboard focus inside an application.
void axFocusCommand(const Arguments& arguments);
void axFocusedCommand(const Arguments& arguments);

/// "ax-menu", "ax-menubar": the menu bar.
void axMenuCommand(const Arguments& arguments);
void axMenubarCommand(const Arguments& arguments);

/// "ax-modal", "ax-modal-press": sheets and dialogs.
void axModalCommand(const Arguments& arguments);
void axModalPressCommand(const Arguments& arguments);

/// "ax-popup-items", "ax-slider": open menus, and sliders.
void axPopupItemsCommand(const Arguments& arguments);
void axSliderCommand(const Arguments& arguments);

/// "reveal": hidden or minimized windows, without activating their application.
void revealCommand(const Arguments& arguments);

}  // namespace driver
