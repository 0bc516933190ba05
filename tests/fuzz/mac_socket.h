#pragma once

#include <string>

namespace fuzz {

/// What connections to the socket of a simulated Mac send, a line for each act, which begins with
/// the connection's letter:
///
///     a ["driver",["driver","session"],[]]     a message: JSON; "@NAME" is the number of a call
///     a ~["control","state"]                   the same, of which the last byte comes later
///     a =\x05\x00                              bytes as they stand, but for escapes
///     a -                                      the connection is closed
///     a +20                                    that many further connections, which say nothing
///     a *2000                                  that many that come and go, one after the other
///
/// Afterwards somebody else joins, and must be served.
std::string complaintAboutSocket(const std::string& input);

}  // namespace fuzz
