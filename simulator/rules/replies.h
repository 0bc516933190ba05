#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/mac/mac.h"

namespace simulator {

/// The reply of a run that found its service gone.
inline constexpr std::string_view livenessRefusal =
    "{\"error\":\"native screen sharing stopped; background input is disabled\",\"ok\":false}\n";

/// What one-shot output says of itself.
struct ReplyFacts {
  bool ok = false;
  bool saysWhy = false;  // it has an "error", or the "axError" of an action or a write
  std::optional<std::int64_t> typed = std::nullopt;  // a whole number
  bool cannotWrite = false;              // the error is that of a picture that could not be written
  bool copyLost = false;                 // it says that somebody's copy was lost
  bool clipboardNotRestored = false;     // it says so
  std::vector<std::string> faults = {};  // why it is no reply: one sentence each
};

/// Checks that the output is exactly one line of canonical JSON (sorted keys, "\/", nothing between
/// tokens, whole numbers without a fraction, UTF-8) that holds an object with a Boolean "ok".
ReplyFacts readReply(const std::string& output);

/// Whether the output is that refusal, whatever it says of the clipboard besides.
bool isLivenessRefusal(const std::string& output);

/// True for commands that live on after their first line, and may write more.
bool isLongLived(std::string_view command);

/// What is wrong with the output of such a command: every line is whole and is an object in that
/// form, the first one has a Boolean "ok". One sentence each.
std::vector<std::string> lineFaults(const std::string& output);

/// The process that the client's CU_CAPTURE_PID names, when it is a positive number.
std::optional<Pid> servicePid(const Client& client);

/// Whether the client's window scope admits a window with this title. Untitled ones pass, and so
/// does everything when the scope is not plain ASCII.
bool titleInScope(const Client& client, const std::string& title);

/// The text with the letters of ASCII in lower case.
std::string lowered(std::string text);

/// The text with each run of white space as one space, and none at its ends. Borrows nothing.
std::string squashedText(std::string_view text);

}  // namespace simulator
