#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/world/world.h"

/// How applications behave: what accessibility shows of them, and how they react.
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

/// The names of an element's actions; none when there is no such element.
std::optional<std::vector<std::string>> actionNames(const Application& application, ElementId id);

/// The innermost element of the window that contains the point; among siblings the later one is on
/// top. 0 when none does.
ElementId elementAt(const Application& application, const Window& window, Point point);

/// The innermost element of the application at a global point: that of its frontmost window there.
/// 0 when there is none.
ElementId elementAtPoint(const World& world, const Application& application, Point point,
                         Microseconds now);

/// Performs an accessibility action. `outcome` tells in one sentence what came of it, for the
/// journal.
ax::Error perform(World& world, Pid pid, ElementId id, const std::string& action,
                  std::string& outcome);

/// Shows a hidden application's windows again. False when no such application runs.
bool unhide(World& world, Pid pid);

/// Lets a click that landed at a global point of a window have its effect: the element under it
/// gets the keyboard focus when it takes text, and its reactions run, in order. Gives one sentence
/// of what happened, for the journal, for example `pressed AXButton "Send"`.
std::string click(World& world, Pid pid, WindowNumber window, Point point, bool right);

}  // namespace simulator
