#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// Elements: what they are, whether they are there, and their coming and going.
namespace simulator {

/// What is peculiar to the element; for most nothing is. Borrowed from the application.
const Habits& habitsOf(const Application& application, ElementId id);

/// Whether an element of the application with the condition's label meets it.
bool holds(const Application& application, const Condition& condition);

/// Whether AXEnabled lets it be used.
bool isEnabled(const Element& element);

/// It takes text: by its role, or because AXEditable says so.
bool isTextInput(const Element& element);

/// A field whose text is nobody's to read: a password's.
bool isSecure(const Element& element);

/// For sentences: `AXButton "Send"`.
std::string described(const Element& element);

/// What the journal calls an element.
struct ElementName {
  std::string role;
  std::string label;        // as `labelOf` gives it
  WindowNumber window = 0;  // that it is drawn in; 0: none
};

ElementName elementName(const Element& element);

/// A number, or a truth as 0 or 1.
std::optional<double> numberOf(const AttributeValue& value);

/// Whether the element is there: neither in a closed menu nor waiting for the pointer. `window` is
/// the window it is drawn in, null for none.
bool isThere(const Application& application, const Window* window, const Element& element);
bool isThere(const World& world, const Application& application, const Element& element);

/// The children that are there.
std::vector<ElementId> childrenOf(const World& world, const Application& application,
                                  const Element& element);

/// Adds an element, as the last child of `parent` unless that is 0. References to other elements
/// are void from then on.
Element& addElement(Application& application, ElementId parent, WindowNumber window,
                    std::optional<Rect> frame, std::string role);

/// Takes the element away, with all that is in it.
void removeElement(Application& application, ElementId id);

/// What an application that cannot hold still does after its element's children were read.
void afterChildrenWereRead(Application& application, ElementId id);

}  // namespace simulator
