#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "main/replies.h"
#include "platform/process.h"
#include "platform/share.h"
#include "platform/types.h"

namespace driver {

/// What the system calls the sharing of a window that is operated.
inline constexpr std::string_view sharingName =
    "Zentrove Desk \xC2\xB7 background operation in this window";

/// How a window of this frame is shared at the lowest useful cost: one frame a second, 640 pixels
/// on its longer side at most, 2 by 2 at least. Child windows are asked for where the system, of
/// this version, can share them.
share::StreamConfiguration streamConfiguration(const platform::Rect& frame,
                                               process::Version version);

/// Ends the process with status 1, because the system has stopped a sharing: nothing may be
/// operated without its mark. The reason is the last line, if the reader takes it in time.
[[noreturn]] void endWhenSharingStops(const std::string& description);

/// Shares one window of a process, so that the system marks it: the user sees which window is
/// operated. When the system stops the sharing, the process ends at once.
class BackgroundCaptureIndicator {
 public:
  /// For the running application that `appID` names. Throws InputFailure when there is none.
  explicit BackgroundCaptureIndicator(const std::string& appID);

  BackgroundCaptureIndicator(const BackgroundCaptureIndicator&) = delete;
  BackgroundCaptureIndicator& operator=(const BackgroundCaptureIndicator&) = delete;

  platform::Pid targetPID() const { return pid_; }

  /// Shares the main window the process has now, in the window scope, and tells which. Throws
  /// InputFailure when that is not possible, and PlatformError as the system does; then what was
  /// shared stays so.
  Reply refresh();

  /// Ends the hold on focus, if there is one, and the sharing.
  void stop();

  /// Gives the shared window the input focus of its process for as long as this shares it, so that
  /// commands need not do so. Throws InputFailure when nothing is shared or focus is refused.
  Reply holdFocus();

 private:
  const share::Window& chosenWindow(const share::Content& content,
                                    const std::optional<platform::WindowNumber>& candidate) const;
  void shareWindow(const share::Content& content, const share::Window& window);
  Reply sharingReply() const;

  platform::Pid pid_;
  std::optional<share::Stream> stream_;
  std::optional<platform::WindowNumber> windowID_;
  bool holdsFocus_ = false;
};

}  // namespace driver
