#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>

#include "tests/soak/play.h"

namespace soak {

/// What is wrong with what happened, and who says so.
struct Complaint {
  std::string judge;  // its name; with the rule that was broken, where there are several
  std::string text;
};

/// A judge sees a case and what happened when it was played; empty when it has no complaint. None
/// of them is the product's own code.
struct Judge {
  std::string_view name;
  std::string (*complaint)(const Case& one, const Played& played);
};

/// All there are, in the order in which they are asked.
std::span<const Judge> judges();

/// The first complaint about a case that has been played.
std::optional<Complaint> judge(const Case& one, const Played& played);

/// Plays a case and judges it; whatever keeps it from being played is a complaint too. What
/// happened is shown to `observe` before.
std::optional<Complaint> verdict(
    const Case& one, const std::string& folder,
    const std::function<void(const Played&)>& observe = [](const Played&) {},
    Trace trace = Trace::none);

/// Plays a case twice, the second time as its files read back and by flows: every call must be the
/// same, with the same answer. `verdict` has found the case playable.
std::optional<Complaint> repetition(const Case& one, const std::string& folder);

/// Plays a case twice, the second time each of its runs on a Mac that was made of a snapshot of the
/// one before: every call must be the same, with the same answer. Only of runs that are alone.
std::optional<Complaint> resumption(const Case& one, const std::string& folder);

}  // namespace soak
