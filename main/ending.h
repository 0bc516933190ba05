#pragma once

namespace driver {

/// The calling flow is going to end the process, beside others that go on: from now on nobody
/// begins an act. Waits for those that are under way, then undoes what frames have still to undo.
/// Only the first call comes back; another flow is held back for good.
void beginEnding();

}  // namespace driver
