#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "tests/support/channels.h"
#include "tests/support/simulated_run.h"

/// Runs of "watch-input", for tests. They begin on the first of January 2026.
namespace testing_support {

/// Browser is in front; Notes lies beside it, and partly under a window of Mail.
inline constexpr std::string_view watchedDesk = R"(
pointer 1200,800
app Browser pid 40 bundle com.example.browser frontmost
    window 5 "Start" at 0,30 size 90x500
        AXTextArea "Page" at 10,60 size 60x200 focused
app Mail pid 42 bundle com.example.mail
    window 8 "Draft" at 100,80 size 100x100
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 100,80 size 800x600
        AXTextArea "Body" at 120,330 size 700x300 focused
)";

/// That desk, and what happens there, one line each, as "2s user key a". Input ends at last.
std::string watchedDeskWith(const std::vector<std::string>& happenings, const char* end = "60s");

/// Runs "watch-input" with these words inside this process, whatever the mode of the tests: it has
/// several flows.
Result watch(TestMac& mac, const std::vector<std::string>& words, const Schedule& schedule = {});

/// What `seen` gives of a watcher on that desk in which this happens.
std::string watched(const std::vector<std::string>& happenings,
                    const std::vector<std::string>& words = {},
                    const std::vector<std::string>& faults = {});

/// What `seen` gives of a watcher, without a target, that wrote its first line and these, and
/// ended.
inline constexpr std::string_view watchingLine = "{\"idleMs\":0,\"ok\":true,\"watching\":true}";
std::string reports(const std::vector<std::string>& lines, int status = 0);

/// The same with Notes, behind, as the target.
inline constexpr std::string_view watchingNotesLine =
    "{\"idleMs\":0,\"ok\":true,\"targetPid\":41,\"touchesTarget\":false,\"watching\":true}";
std::string reportsOnNotes(const std::vector<std::string>& lines, int status = 0);

/// The report of an input of this kind at a time in milliseconds since the beginning.
std::string report(std::string_view kind, int time);

/// The same with a target.
std::string reportOnTarget(std::string_view kind, int time, bool touchesTarget);

/// The report of a key that submits to the application with this bundle identifier.
std::string submission(std::string_view bundle, int time);

}  // namespace testing_support
