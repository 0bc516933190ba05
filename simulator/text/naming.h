#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "simulator/text/error.h"
#include "simulator/world/world.h"

/// How lines and errors name applications.
namespace simulator {

/// For errors: its name, or `pid N`.
std::string nameOf(const Application& application);

/// An application is written as its name, or as this with its process id.
inline constexpr std::string_view pidPrefix = "pid:";

/// The process id that is written so; none for a name.
std::optional<Pid> pidWritten(std::string_view name);

/// The running application that is written so. Throws WorldError for the line when there is none,
/// or more than one.
Pid applicationNamed(const Spot& spot, const World& world, const std::string& name);

/// An application as a line may write it: by its process id, or for people, with a world, by its
/// name there. A name that others have too, or that is no name, is not used.
std::string writtenName(Pid pid, const World* world = nullptr);

/// Throws that no element of the application has the label.
[[noreturn]] void failUnlabelled(const Spot& spot, const Application& application,
                                 const std::string& label);

}  // namespace simulator
