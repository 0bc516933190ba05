#pragma once

#include <string>
#include <vector>

#include "main/replies.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// Writes a text into the text input that the label and the point describe, and reads it back;
/// returns the reply. `mode` says where: "replace" (which spares what is none of
/// `ownedPriorTexts`), "message", "end", "new_line" or "caret"; any other word is as "end".
Reply axInsert(const ax::Element& application, const std::string& label, platform::Point point,
               const std::string& mode, const std::string& text,
               const std::vector<std::string>& ownedPriorTexts);

}  // namespace driver
