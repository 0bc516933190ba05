#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

#include "base/datum.h"
#include "platform/wire.h"

/// The seam as data: what the simulated side of the seam says to a simulated Mac, and how its
/// structures travel. Not part of the Mac's executable.
namespace platform {

/// Every function that asks the simulated Mac. Functions marked local in their headers do not.
enum class Function : std::uint8_t {
  uptime,
  calendar,
  sleep,
  startFlow,
  endFlow,
  suspend,
  postToMain,
  scheduleOnMain,
  nextItem,
  leaveDesktop,
  returnToDesktop,
  environment,
  nullSignal,
  handleSignal,
  noteSignal,
  dieBySignal,
  exit,
  fullUserName,
  loginName,
  givenName,
  preferredLanguages,
  operatingSystemVersion,
  currentDirectory,
  toolOutput,
  writeOutput,
  acquireOutput,
  releaseOutput,
  readLine,
  readAvailable,
  lockFile,
  replaceFile,
  listDirectory,
  fileExists,
  resolvedPath,
  openLibrary,
  findSymbol,
  findLoadedSymbol,
  axAttribute,
  axAttributes,
  axActionNames,
  axElementAt,
  axPerform,
  axSetAttribute,
  axTrusted,
  createSource,
  createEvent,
  createMouseEvent,
  createScrollEvent,
  createKeyboardEvent,
  secondsSinceLast,
  createTap,
  enableTap,
  tapVerdict,
  publicPost,
  privatePost,
  postRecord,
  processForPid,
  frontProcess,
  processPid,
  axGetWindow,
  lockScreen,
  windows,
  windowDescription,
  session,
  displayMode,
  captureAccess,
  shieldingLevel,
  application,
  applicationsWithBundle,
  applications,
  frontmost,
  unhide,
  activationPolicy,
  terminated,
  prohibitOwnActivation,
  shareContent,
  screenshot,
  startStream,
  updateFilter,
  updateConfiguration,
  stopStream,
  nextStop,
  loadImage,
  pngOfImage,
  pixelsOfImage,
  decodeImage,
  fileIcon,
  pasteboardItems,
  pasteboardChangeCount,
  clearPasteboard,
  writePasteboard,
  writeFilesToPasteboard,
  preventDisplaySleep,
  screens,
  measureText,
  showPanel,
  setPanelLabel,
  closePanel,
};

/// The functions' names in traces and fault descriptions, by their order above.
inline constexpr std::array<std::string_view, 98> functionNames = {
    "loop.uptime",
    "loop.calendar",
    "loop.sleep",
    "loop.start-flow",
    "loop.end-flow",
    "loop.suspend",
    "loop.post",
    "loop.schedule",
    "loop.next-item",
    "loop.leave",
    "loop.return",
    "process.environment",
    "process.null-signal",
    "process.handle-signal",
    "process.note-signal",
    "process.die",
    "process.exit",
    "process.full-user-name",
    "process.login-name",
    "process.given-name",
    "process.preferred-languages",
    "process.operating-system-version",
    "process.current-directory",
    "process.tool-output",
    "streams.write-output",
    "streams.acquire-output",
    "streams.release-output",
    "streams.read-line",
    "streams.read-available",
    "streams.lock-file",
    "streams.replace-file",
    "streams.list-directory",
    "streams.file-exists",
    "streams.resolved-path",
    "loader.open-library",
    "loader.find-symbol",
    "loader.find-loaded-symbol",
    "ax.attribute",
    "ax.attributes",
    "ax.action-names",
    "ax.element-at",
    "ax.perform",
    "ax.set-attribute",
    "ax.trusted",
    "quartz.create-source",
    "quartz.create-event",
    "quartz.create-mouse-event",
    "quartz.create-scroll-event",
    "quartz.create-keyboard-event",
    "quartz.seconds-since-last",
    "tap.create",
    "tap.enable",
    "tap.verdict",
    "quartz.post",
    "private.post",
    "private.post-record",
    "private.process-for-pid",
    "private.front-process",
    "private.process-pid",
    "private.ax-window",
    "private.lock-screen",
    "windowserver.windows",
    "windowserver.description",
    "windowserver.session",
    "windowserver.display-mode",
    "windowserver.capture-access",
    "windowserver.shielding-level",
    "workspace.application",
    "workspace.applications-with-bundle",
    "workspace.applications",
    "workspace.frontmost",
    "workspace.unhide",
    "workspace.activation-policy",
    "workspace.terminated",
    "workspace.prohibit-own-activation",
    "share.content",
    "share.screenshot",
    "share.start-stream",
    "share.update-filter",
    "share.update-configuration",
    "share.stop-stream",
    "share.next-stop",
    "image.load",
    "image.png",
    "image.pixels",
    "image.decode",
    "image.file-icon",
    "pasteboard.items",
    "pasteboard.change-count",
    "pasteboard.clear",
    "pasteboard.write",
    "pasteboard.write-files",
    "power.prevent-display-sleep",
    "cover.screens",
    "cover.measure",
    "cover.show",
    "cover.set-label",
    "cover.close",
};

static_assert(functionNames.size() == static_cast<std::size_t>(Function::closePanel) + 1);

/// One call of a seam function.
struct Call {
  Function function{};
  driver::Datum::List arguments;
};

/// Where calls go. One process has one channel, for all its flows.
class Channel {
 public:
  Channel() = default;
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  virtual ~Channel() = default;

  /// Makes the call and returns its answer once it is due. A platform error travels as an answer:
  /// see `Thrown`.
  virtual driver::Datum call(Call call) = 0;

  /// The process's id on the simulated Mac.
  virtual Pid ownPid() const = 0;

  /// Starts a further flow of this process, which makes its calls through this channel too.
  virtual void startFlow(std::function<void()> body) = 0;

  /// Passes these signals on to the main flow from now on, where the process gets any.
  virtual void watchSignals(const std::vector<int>& numbers) = 0;

  /// True when the simulated Mac keeps what is written to standard output; false when the process
  /// writes to its own descriptor.
  virtual bool keepsOutput() const = 0;

  /// Ends the process after the simulated Mac has been told.
  [[noreturn]] virtual void exit(int status) = 0;

  /// Ends it by a signal, likewise.
  [[noreturn]] virtual void dieBySignal(int signal) = 0;
};

}  // namespace platform
