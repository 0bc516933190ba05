#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "accessibility/snapshot.h"
#include "base/value.h"
#include "main/globals.h"
#include "main/replies.h"
#include "platform/ax.h"
#include "platform/types.h"

namespace driver {

/// What a description is made of, apart from the value.
inline constexpr AttributeSet infoAttributes =
    AttributeSet{Attribute::role} | labelAttributes | frameAttributes;

/// An element as replies describe it: "role", "label", "value" (a text, cut), "textValue" and
/// "textValueComplete" (a text field's), "frame". Of a field's inner elements it reads `each`.
Value::Object axInfo(Snapshot& element, const Batch& each);

/// The same of an element that is read for it now.
Value::Object axInfo(const ax::Element& element);

/// The same without "value", which is not read.
Value::Object infoWithoutValue(Snapshot& element, const Batch& each);

/// A frame as replies have it.
Value::Object frameInfo(const platform::Rect& frame);

/// The point whose coordinates are the words at `index` and after it. Fails when one is missing or
/// no number.
platform::Point pointIn(const Arguments& arguments, std::size_t index);

/// The text in double quotation marks.
std::string quoted(const std::string& text);

/// The texts with the separator between them.
std::string joined(const std::vector<std::string>& texts, const std::string& separator);

/// The platform's code, as replies have it.
std::int32_t codeOf(ax::Error error);

/// What a reply says of an action or a write: "ok", and the platform's code as "axError".
Reply actionReply(ax::Error error);

}  // namespace driver
