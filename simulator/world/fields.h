#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/elements.h"
#include "simulator/world/world.h"

/// Fields that take text: what they show of it, and what comes of a write.
namespace simulator {

/// Makes the text the field's AXValue, whatever its habits; the caret follows to the end. The
/// static texts of a composer follow too: references to elements are void from then on.
void putText(Application& application, ElementId id, std::string text);

/// As `putText`, with a text behind the present one.
void addText(Application& application, ElementId id, const std::string& text);

/// The selection of a field, within its text; in UTF-16 units.
ax::Range selectionOf(const Element& element);

/// Puts a text in place of a part of the field's, as the user's keys do: its transforms are made of
/// the whole. The caret follows. References to elements are void from then on.
void typeInto(Application& application, ElementId id, const ax::Range& range,
              const std::string& text);

/// What is selected in a field.
std::string selectedText(const Element& element);

/// What has the application's keyboard focus is to take the contents of the pasteboard; the
/// application reads it some time later, or at once. Gives a sentence for the journal.
std::string requestPaste(World& world, Application& application);

/// Gives the field the keyboard focus. Its caret goes to the end unless it has a place already.
void focusField(Application& application, Element& element);

/// How a field answers a read of one of the attributes of its text; none for another attribute,
/// and where the world's text says what it is.
std::optional<AttributeResult> readField(const Application& application, const Element& element,
                                         const std::string& name);

/// Whether the attribute is one that `writeField` answers for.
bool isFieldAttribute(const Element& element, const std::string& name);

/// Writes the text, the selected text or the selection of a field.
ax::Error writeField(World& world, Application& application, Element& element,
                     const std::string& name, const AttributeValue& value, Microseconds now);

/// A write or a paste that was asked for before, and what has come of it.
struct SettledWrite {
  Microseconds at = 0;
  Pid actor = 0;
  Pid pid = 0;
  std::optional<ElementName> element;  // none: it has gone
  std::string attribute;               // empty: a paste
  std::string text;                    // that came, or the paths of files
  bool landed = false;
  std::string outcome;  // why not, or a sentence for the journal
};

/// Lets the writes and pastes land that are due by `now`, in order. That is the present then.
std::vector<SettledWrite> settleWrites(World& world, Microseconds now);

/// What the journal is to say of a field that was given a text: empty when it holds just that.
std::string heldAfter(const Element& element, const std::string& text);

/// At the start: a composer with a text gets its static texts, and one that has static texts gets
/// its text.
void settleComposer(Application& application, ElementId id);

}  // namespace simulator
