#pragma once

#include <cstdint>
#include <string>

namespace oracle {

/// A world's text that this seed gives: applications of both kinds with windows, sheets, menus and
/// trees of elements; equal labels, ill-formed texts, attributes that lie or fail, several
/// displays, and now and then something that the system lacks. Nothing happens in it by itself.
std::string randomWorld(std::uint64_t seed);

}  // namespace oracle
