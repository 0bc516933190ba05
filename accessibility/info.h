#pragma once

#include <string>

#include "accessibility/snapshot.h"
#include "base/value.h"
#include "main/replies.h"
#include "platform/ax.h"

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

/// The text in double quotation marks.
std::string quoted(const std::string& text);

/// What a reply says of an action or a write: "ok", and the platform's code as "axError".
Reply actionReply(ax::Error error);

}  // namespace driver
