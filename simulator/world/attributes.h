#pragma once

#include <string>

#include "simulator/world/world.h"

/// What accessibility shows of applications, and lets others write.
namespace simulator {

/// Reads an attribute of an element (id 0: the application element). A tree that is made on demand
/// shows no windows and no children before its time.
AttributeResult readAttribute(const World& world, const Application& application, ElementId id,
                              const std::string& name, Microseconds now);

/// Writes an attribute. The two enabling attributes of the application element are remembered;
/// AXHidden, a window's AXMinimized, a field's text, selection and focus, and a slider's value have
/// their effects; others change the element when it has the attribute already.
ax::Error writeAttribute(World& world, Application& application, ElementId id,
                         const std::string& name, const AttributeValue& value, Microseconds now);

/// Whether the application shows its tree by now, see Application::treeOnDemand.
bool hasTree(const Application& application, Microseconds now);

}  // namespace simulator
