#pragma once

#include <optional>

#include "base/datum.h"

namespace simulated {

/// Writes one datum to a stream, led by its length. False when the other end has gone; no signal is
/// raised then.
bool writeFrame(int descriptor, const driver::Datum& datum);

/// Reads one datum that `writeFrame` wrote, waiting for all of it. None at the end of the stream,
/// after an error, and for a frame that is malformed or longer than 256 MiB.
std::optional<driver::Datum> readFrame(int descriptor);

/// The same from bytes that have been read already: takes the first frame off `bytes`. None while
/// it is not whole; throws MalformedDatum for one that can never be.
std::optional<driver::Datum> takeFrame(std::string& bytes);

/// The bytes of a frame.
std::string frameOf(const driver::Datum& datum);

}  // namespace simulated
