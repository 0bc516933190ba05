#pragma once

#include "accessibility/snapshot.h"
#include "base/value.h"
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

}  // namespace driver
