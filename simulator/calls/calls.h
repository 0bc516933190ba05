#pragma once

#include "simulator/mac/arguments.h"
#include "simulator/mac/mac.h"

/// How the world answers each call, one function a call; `answer` chooses among them.
namespace simulator {

/// Lets the world answer a call. Throws MalformedDatum for arguments of the wrong form.
/// `since` is when the call was made, now or before for one that was pending.
Answer answer(Mac& mac, Client& client, const platform::Call& call, Microseconds since);

namespace calls {

/// Answers one call. The world may change.
using Function = Answer(Mac& mac, Client& client, const Arguments& arguments);

// Flows and time.
Function uptime, calendar, sleep, startFlow, endFlow, suspend, postToMain, scheduleOnMain, nextItem,
    leaveDesktop, returnToDesktop;

// Processes.
Function environment, nullSignal, handleSignal, noteSignal, dieBySignal, exit, fullUserName,
    loginName, givenName, preferredLanguages, operatingSystemVersion, currentDirectory, toolOutput;

// Standard input and output, files and libraries.
Function writeOutput, acquireOutput, releaseOutput, readLine, readAvailable, lockFile, replaceFile,
    listDirectory, fileExists, resolvedPath, openLibrary, findSymbol, findLoadedSymbol;

// Accessibility.
Function axAttribute, axAttributes, axActionNames, axElementAt, axPerform, axSetAttribute,
    axTrusted, axGetWindow;

// Events, records and taps.
Function createSource, createEvent, createMouseEvent, createScrollEvent, createKeyboardEvent,
    secondsSinceLast, createTap, enableTap, tapVerdict, publicPost, privatePost, postRecord,
    processForPid, frontProcess, processPid, lockScreen;

// Windows, session, displays, applications.
Function windows, windowDescription, session, displayMode, captureAccess, shieldingLevel,
    application, applicationsWithBundle, applications, frontmost, unhide, activationPolicy,
    terminated, prohibitOwnActivation;

// Sharing and pictures.
Function shareContent, screenshot, startStream, updateFilter, updateConfiguration, stopStream,
    nextStop, loadImage, pngOfImage, pixelsOfImage, decodeImage, fileIcon;

// The pasteboard, power, the cover.
Function pasteboardItems, pasteboardChangeCount, clearPasteboard, writePasteboard,
    writeFilesToPasteboard, preventDisplaySleep, screens, measureText, showPanel, setPanelLabel,
    closePanel;

}  // namespace calls

}  // namespace simulator
