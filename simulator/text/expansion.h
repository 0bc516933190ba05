#pragma once

#include <functional>

#include "simulator/text/call.h"
#include "simulator/text/gathering.h"

/// The lines that `use` and `repeat` make of a world's lines. Whoever reads what comes of them need
/// not know of either.
namespace simulator {

/// Takes one line after the other.
using TakeLine = std::function<void(const Line& line)>;

/// Gives all lines that come of a world's, in order; at most a million come of bodies.
void expand(const WorldLines& world, const TakeLine& take, const Complain& complain);

/// Gives the lines that come of one call, the outermost without indentation. Throws WorldError, as
/// `checkCall` does for a call that does not fit.
void expandCall(const Definitions& definitions, const Call& call, const TakeLine& take);

/// Throws unless there is such a definition with so many parameters. `words` have just read the
/// call.
void checkCall(const Definitions& definitions, const Call& call, const Words& words);

}  // namespace simulator
