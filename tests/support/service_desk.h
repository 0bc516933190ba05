#pragma once

#include <string>
#include <vector>

#include "tests/support/service_run.h"

/// A desk for sessions of the capture service, and a session that does everything.
namespace testing_support {

inline constexpr const char* serviceDesk = R"(
    display 1 1440x900 scale 2
    app Browser pid 40 bundle com.example.browser chromium frontmost
        window 5 "Start" at 0,30 size 90x500
    app Notes pid 41 bundle com.example.notes
        window 7 "Inbox" at 100,80 size 800x600
            AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 120,130 size 700x400 value "hello "
    app Mail pid 42 bundle com.example.mail
        window 8 "Drafts" at 900,80 size 500x600
            AXButton "New" at 920,90 size 60x20
)";

inline const std::string notesShared =
    R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":41,"windowId":7})";
inline const std::string mailShared =
    R"({"ok":true,"pid":5000000,"sharing":true,"targetPid":42,"windowId":8})";
inline const std::string notesHeld =
    R"({"ok":true,"reply":{"focusPid":41,"focusWindow":7,"ok":true}})";
inline const std::string notesClicked =
    R"({"ok":true,"reply":{"changed":true,"ok":true,"via":"background","window":7}})";
inline const std::string mailClicked =
    R"({"ok":true,"reply":{"changed":false,"ok":true,"via":"background","window":8}})";
inline const std::string closed = R"({"ok":true})";

/// Two sessions, of which one holds focus; input into both.
inline std::vector<std::string> wholeSession() {
  return {openLine("n", "Notes"),
          openLine("m", "Mail"),
          sessionLine("refresh", "n"),
          commandLine("n", "bg-focus-hold Notes"),
          commandLine("n", "bg-click Notes 130 95"),
          commandLine("m", "bg-click Mail 930 95"),
          sessionLine("close", "n"),
          sessionLine("refresh", "m")};
}

inline std::vector<std::string> wholeSessionReplies() {
  return {notesShared,  mailShared,  notesShared, notesHeld,
          notesClicked, mailClicked, closed,      mailShared};
}

/// The last line of a service whose sharing the user has stopped.
inline const std::string sharingStopped =
    R"({"error":"native screen sharing stopped: Error )"
    R"(Domain=com.apple.ScreenCaptureKit.SCStreamErrorDomain Code=-3817 \"The user stopped the )"
    R"(stream\"","ok":false,"sharing":false})";

}  // namespace testing_support
