#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The calls that the simulated side of the seam makes of a simulated Mac, each in one row. All
/// that is said of a call elsewhere follows from its row: its number, its name, how it can fail,
/// and which function of the simulated Mac answers it.

// clang-format would join the rows.
// clang-format off

/// The forms of answers; the form decides how a call can fail.
///   shape  the enumerator of platform::Shape
///   text   what it is called for readers; without a comma
/// A "fixed" answer cannot fail by itself. A "post" is answered in the same way whether or not
/// it arrives. Every "message" is one to an application, which may not answer.
#define ANSWER_SHAPES(shape) \
  shape(fixed,        "fixed")                  \
  shape(post,         "post")                   \
  shape(optional,     "value or nothing")       \
  shape(boolean,      "yes or no")              \
  shape(query,        "yes or no of the system") \
  shape(list,         "list")                   \
  shape(optionalList, "list or nothing")        \
  shape(items,        "items or nothing")       \
  shape(status,       "status")                 \
  shape(lock,         "status of the lock")     \
  shape(serial,       "status and serial")      \
  shape(window,       "message for a window")   \
  shape(readings,     "message for attributes") \
  shape(actionNames,  "message for actions")    \
  shape(hit,          "message for an element") \
  shape(outcome,      "message")                \
  shape(content,      "shareable content")      \
  shape(thrown,       "platform error or none") \
  shape(number,       "number")                 \
  shape(text,         "text")

/// Every seam function that asks the simulated Mac; those marked local in their headers do not.
///   function  the enumerator of platform::Function, and the function of simulator/calls/ that
///             answers the call; its place is its number as it travels, so a new row is the last
///   name      in traces and faults
///   shape     the form of the answer, see above
#define SEAM_CALLS(call) \
  call(uptime,                 "loop.uptime",                        fixed)        \
  call(calendar,               "loop.calendar",                      fixed)        \
  call(sleep,                  "loop.sleep",                         fixed)        \
  call(startFlow,              "loop.start-flow",                    fixed)        \
  call(endFlow,                "loop.end-flow",                      fixed)        \
  call(suspend,                "loop.suspend",                       fixed)        \
  call(postToMain,             "loop.post",                          fixed)        \
  call(scheduleOnMain,         "loop.schedule",                      fixed)        \
  call(nextItem,               "loop.next-item",                     fixed)        \
  call(leaveDesktop,           "loop.leave",                         fixed)        \
  call(returnToDesktop,        "loop.return",                        fixed)        \
  call(environment,            "process.environment",                fixed)        \
  call(nullSignal,             "process.null-signal",                boolean)      \
  call(handleSignal,           "process.handle-signal",              fixed)        \
  call(noteSignal,             "process.note-signal",                fixed)        \
  call(dieBySignal,            "process.die",                        fixed)        \
  call(exit,                   "process.exit",                       fixed)        \
  call(fullUserName,           "process.full-user-name",             fixed)        \
  call(loginName,              "process.login-name",                 fixed)        \
  call(givenName,              "process.given-name",                 optional)     \
  call(preferredLanguages,     "process.preferred-languages",        list)         \
  call(operatingSystemVersion, "process.operating-system-version",   fixed)        \
  call(currentDirectory,       "process.current-directory",          text)         \
  call(toolOutput,             "process.tool-output",                optional)     \
  call(writeOutput,            "streams.write-output",               boolean)      \
  call(acquireOutput,          "streams.acquire-output",             boolean)      \
  call(releaseOutput,          "streams.release-output",             fixed)        \
  call(readLine,               "streams.read-line",                  fixed)        \
  call(readAvailable,          "streams.read-available",             fixed)        \
  call(lockFile,               "streams.lock-file",                  boolean)      \
  call(replaceFile,            "streams.replace-file",               boolean)      \
  call(listDirectory,          "streams.list-directory",             optional)     \
  call(fileExists,             "streams.file-exists",                boolean)      \
  call(resolvedPath,           "streams.resolved-path",              fixed)        \
  call(openLibrary,            "loader.open-library",                optional)     \
  call(findSymbol,             "loader.find-symbol",                 boolean)      \
  call(findLoadedSymbol,       "loader.find-loaded-symbol",          boolean)      \
  call(axAttribute,            "ax.attribute",                       readings)     \
  call(axAttributes,           "ax.attributes",                      readings)     \
  call(axActionNames,          "ax.action-names",                    actionNames)  \
  call(axElementAt,            "ax.element-at",                      hit)          \
  call(axPerform,              "ax.perform",                         outcome)      \
  call(axSetAttribute,         "ax.set-attribute",                   outcome)      \
  call(axTrusted,              "ax.trusted",                         query)        \
  call(createSource,           "quartz.create-source",               optional)     \
  call(createEvent,            "quartz.create-event",                optional)     \
  call(createMouseEvent,       "quartz.create-mouse-event",          optional)     \
  call(createScrollEvent,      "quartz.create-scroll-event",         optional)     \
  call(createKeyboardEvent,    "quartz.create-keyboard-event",       optional)     \
  call(secondsSinceLast,       "quartz.seconds-since-last",          number)       \
  call(createTap,              "tap.create",                         optional)     \
  call(enableTap,              "tap.enable",                         post)         \
  call(tapVerdict,             "tap.verdict",                        fixed)        \
  call(publicPost,             "quartz.post",                        post)         \
  call(privatePost,            "private.post",                       post)         \
  call(postRecord,             "private.post-record",                status)       \
  call(processForPid,          "private.process-for-pid",            serial)       \
  call(frontProcess,           "private.front-process",              serial)       \
  call(processPid,             "private.process-pid",                serial)       \
  call(axGetWindow,            "private.ax-window",                  window)       \
  call(lockScreen,             "private.lock-screen",                lock)         \
  call(windows,                "windowserver.windows",               optionalList) \
  call(windowDescription,      "windowserver.description",           optionalList) \
  call(session,                "windowserver.session",               optional)     \
  call(displayMode,            "windowserver.display-mode",          optional)     \
  call(captureAccess,          "windowserver.capture-access",        boolean)      \
  call(shieldingLevel,         "windowserver.shielding-level",       fixed)        \
  call(application,            "workspace.application",              optional)     \
  call(applicationsWithBundle, "workspace.applications-with-bundle", list)         \
  call(applications,           "workspace.applications",             list)         \
  call(frontmost,              "workspace.frontmost",                optional)     \
  call(unhide,                 "workspace.unhide",                   boolean)      \
  call(activationPolicy,       "workspace.activation-policy",        optional)     \
  call(terminated,             "workspace.terminated",               boolean)      \
  call(prohibitOwnActivation,  "workspace.prohibit-own-activation",  fixed)        \
  call(shareContent,           "share.content",                      content)      \
  call(screenshot,             "share.screenshot",                   thrown)       \
  call(startStream,            "share.start-stream",                 thrown)       \
  call(updateFilter,           "share.update-filter",                thrown)       \
  call(updateConfiguration,    "share.update-configuration",         thrown)       \
  call(stopStream,             "share.stop-stream",                  thrown)       \
  call(nextStop,               "share.next-stop",                    fixed)        \
  call(loadImage,              "image.load",                         optional)     \
  call(pngOfImage,             "image.png",                          optional)     \
  call(pixelsOfImage,          "image.pixels",                       optional)     \
  call(decodeImage,            "image.decode",                       optional)     \
  call(fileIcon,               "image.file-icon",                    optional)     \
  call(pasteboardItems,        "pasteboard.items",                   items)        \
  call(pasteboardChangeCount,  "pasteboard.change-count",            fixed)        \
  call(clearPasteboard,        "pasteboard.clear",                   fixed)        \
  call(writePasteboard,        "pasteboard.write",                   boolean)      \
  call(writeFilesToPasteboard, "pasteboard.write-files",             boolean)      \
  call(preventDisplaySleep,    "power.prevent-display-sleep",        fixed)        \
  call(screens,                "cover.screens",                      list)         \
  call(measureText,            "cover.measure",                      fixed)        \
  call(showPanel,              "cover.show",                         fixed)        \
  call(setPanelLabel,          "cover.set-label",                    fixed)        \
  call(closePanel,             "cover.close",                        fixed)        \
  call(placePanel,             "cover.place",                        fixed)        \
  call(tapIsEnabled,           "tap.is-enabled",                     query)        \
  call(tapCanBeMade,           "tap.can-be-made",                    query)        \
  call(goRounds,               "loop.go-rounds",                     fixed)        \
  call(awaitRound,             "loop.await-round",                   fixed)        \
  call(signalSemaphore,        "loop.signal",                        fixed)        \
  call(waitForSemaphore,       "loop.wait",                          fixed)

// clang-format on

namespace platform {

enum class Shape : std::uint8_t {
#define ENUMERATOR(shape, text) shape,
  ANSWER_SHAPES(ENUMERATOR)
#undef ENUMERATOR
};

enum class Function : std::uint8_t {
#define ENUMERATOR(function, name, shape) function,
  SEAM_CALLS(ENUMERATOR)
#undef ENUMERATOR
};

/// By Shape.
inline constexpr std::array shapeTexts = {
#define TEXT(shape, text) std::string_view(text),
    ANSWER_SHAPES(TEXT)
#undef TEXT
};

constexpr std::string_view textOf(Shape shape) {
  return shapeTexts[static_cast<std::size_t>(shape)];
}

/// By Function.
inline constexpr std::array functionNames = {
#define NAME(function, name, shape) std::string_view(name),
    SEAM_CALLS(NAME)
#undef NAME
};

/// Whether no two names are the same: of two that are, the later could not be given a fault.
constexpr bool areDistinct(const auto& names) {
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (names[i] == names[j]) return false;
    }
  }
  return true;
}

static_assert(areDistinct(functionNames));

constexpr std::string_view nameOf(Function function) {
  return functionNames[static_cast<std::size_t>(function)];
}

constexpr Shape shapeOf(Function function) {
  constexpr std::array shapes = {
#define SHAPE(function, name, shape) Shape::shape,
      SEAM_CALLS(SHAPE)
#undef SHAPE
  };
  return shapes[static_cast<std::size_t>(function)];
}

}  // namespace platform
