#pragma once

#include <string>
#include <string_view>

#include "tests/support/simulated_run.h"

/// Runs of "bg-paste-files", for tests.
namespace testing_support {

/// The user's clipboard has two items, the first of them in two ways. Notes pastes by keys, Mail by
/// its menu; Browser is in front.
inline constexpr std::string_view pastingDesk = R"(
directory "/Users/ada"
process 900
pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}"
pasteboard item "public.png" "picture"
app Browser pid 40 bundle com.example.browser frontmost
    window 5 "Start" at 0,30 size 90x200
        AXTextField "Address" at 10,60 size 60x20 focused
app Notes pid 41 bundle com.example.notes
    menu File > Save cmd s press: append "saved" to Body
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,130 size 700x400 value "hello " focused
app Mail pid 42 bundle com.example.mail
    menu Edit > Paste cmd v
    window 8 "Draft" at 100,80 size 800x600
        AXTextArea "Letter" at 120,130 size 700x400 takes files focused
)";

/// That desk, and further lines.
std::string pastingDeskWith(std::string_view lines);

/// All that can be read on the clipboard, as "TYPE=DATA TYPE=DATA, TYPE=DATA".
std::string clipboard(const TestMac& mac);
inline constexpr const char* usersClipboard =
    "public.utf8-plain-text=old public.rtf={old}, public.png=picture";
inline constexpr const char* newerClipboard = "public.utf8-plain-text=newer";

/// What a caller sees of a paste into Notes, and into Mail.
inline const std::string pastedIntoNotes =
    success(R"({"ok":true,"pid":41,"via":"background","window":7})");
inline const std::string pastedIntoMail =
    success(R"({"ok":true,"pid":42,"via":"background","window":8})");

/// What a caller sees of a refusal that was found while working.
std::string refused(const std::string& message);

/// The titles of the files attached in an application, in order.
std::string attachedFiles(const TestMac& mac, std::string_view application);

}  // namespace testing_support
