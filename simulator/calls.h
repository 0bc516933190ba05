#pragma once

#include "simulator/arguments.h"
#include "simulator/mac.h"

/// How the world answers each call, one function a call; `answer` chooses among them.
namespace simulator {

/// Lets the world answer a call. Throws MalformedDatum for arguments of the wrong form.
Answer answer(Mac& mac, Client& client, const platform::Call& call);

namespace calls {

/// Answers one call. The world may change.
using Function = Answer(Mac& mac, Client& client, const Arguments& arguments);

// Processes, files and libraries.
Function uptime, sleep, environment, nullSignal, exit, fullUserName, loginName, givenName,
    writeOutput, replaceFile, listDirectory, fileExists, openLibrary, findSymbol, findLoadedSymbol;

// Accessibility.
Function axAttribute, axAttributes, axActionNames, axElementAt, axPerform, axSetAttribute,
    axTrusted, axGetWindow;

// Events and records.
Function createSource, createEvent, createMouseEvent, createScrollEvent, publicPost, privatePost,
    postRecord, processForPid, frontProcess, processPid;

// Windows, session, displays, applications.
Function windows, windowDescription, session, displayMode, captureAccess, application,
    applicationsWithBundle, applications, frontmost, unhide, activationPolicy;

// Sharing and pictures.
Function shareContent, screenshot, loadImage, pngOfImage, pixelsOfImage;

}  // namespace calls

}  // namespace simulator
