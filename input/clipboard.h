#pragma once

#include <functional>

namespace driver {

/// Puts something else on the user's clipboard while `use` runs: `write` puts it on the empty
/// clipboard and tells whether it could. 300 ms after `use` the user's contents come back, also
/// when `use` throws or the run fails meanwhile; unless somebody else has put something there
/// since. Throws InputFailure, in place of running `use`, when the clipboard could not be written.
void withClipboard(const std::function<bool()>& write, const std::function<void()>& use);

}  // namespace driver
