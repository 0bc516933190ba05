#pragma once

#include <string>
#include <vector>

#include "tests/oracle/json_line.h"
#include "tests/oracle/stage.h"

/// The commands, one function each. Each takes the words behind the command's name, plays the
/// command on the stage, and gives its reply.
namespace oracle {

using Words = std::vector<std::string>;

// State.
Json permissions(Stage& stage);
Json scene(Stage& stage);
Json session(Stage& stage);
Json windows(Stage& stage, const Words& words);

// Searches and lists.
Json axList(Stage& stage, const Words& words);
Json axDump(Stage& stage, const Words& words);
Json axFindText(Stage& stage, const Words& words);
Json axTextsAt(Stage& stage, const Words& words);
Json axAt(Stage& stage, const Words& words);
Json axPopupItems(Stage& stage, const Words& words);

// Presses.
Json axPress(Stage& stage, const Words& words);
Json axMatch(Stage& stage, const Words& words);
Json axPressMatch(Stage& stage, const Words& words);
Json axPressExact(Stage& stage, const Words& words);
Json axPressChild(Stage& stage, const Words& words);
Json axPressInDocument(Stage& stage, const Words& words);

// Texts.
Json axInsert(Stage& stage, const Words& words);
Json axFocus(Stage& stage, const Words& words);
Json axFocused(Stage& stage, const Words& words);
Json axSetValue(Stage& stage, const Words& words);

// Menus, dialogs and controls.
Json axMenu(Stage& stage, const Words& words);
Json axMenubar(Stage& stage, const Words& words);
Json axModal(Stage& stage, const Words& words);
Json axModalPress(Stage& stage, const Words& words);
Json axSlider(Stage& stage, const Words& words);
Json reveal(Stage& stage, const Words& words);

// Pointer, pictures and focus.
Json bgClick(Stage& stage, const Words& words);
Json bgScroll(Stage& stage, const Words& words);
Json bgMove(Stage& stage, const Words& words);
Json bgDrag(Stage& stage, const Words& words);
Json capture(Stage& stage, const Words& words);
Json captureProbe(Stage& stage);
Json focusRelease(Stage& stage, const Words& words);

// Keys.
Json bgKey(Stage& stage, const Words& words);
Json bgType(Stage& stage, const Words& words);
Json bgPasteFiles(Stage& stage, const Words& words);

/// A refusal as a reply.
Json refusal(const std::string& error);

/// The command needs at least so many words; otherwise it fails with its usage.
void require(const Words& words, std::size_t count, const std::string& usage);

/// The coordinate at this place behind the command's name.
double coordinate(const Words& words, std::size_t index);
Point pointAt(const Words& words, std::size_t index);

/// The text in double quotation marks.
std::string inQuotes(const std::string& text);

}  // namespace oracle
