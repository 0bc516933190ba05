#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "main/replies.h"
#include "platform/ax.h"

namespace driver {

/// The text in double quotation marks.
std::string quoted(const std::string& text);

/// The texts with the separator between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

/// The platform's code, as replies have it.
std::int32_t codeOf(ax::Error error);

/// What a reply says of an action or a write: "ok", and the platform's code as "axError".
Reply actionReply(ax::Error error);

}  // namespace driver
