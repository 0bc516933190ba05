#pragma once

#include <functional>
#include <string>
#include <vector>

#include "input/keyboard_input.h"
#include "main/arguments.h"

namespace driver {

/// Puts something else on the user's clipboard while `use` runs: `write` puts it on the empty
/// clipboard and tells whether it could. 300 ms after `use` the user's contents come back, also
/// when `use` throws or the run fails meanwhile; unless somebody else has put something there
/// since. Throws InputFailure, in place of running `use`, when the clipboard could not be read (it
/// is then not touched) or written, or when somebody else has used it meanwhile. `use` is given
/// what throws InputFailure once somebody else has, to be asked again before anything is pasted.
/// `copyLost` and `clipboardNotRestored` of the globals tell what could not be helped.
void withClipboard(const std::function<bool()>& write,
                   const std::function<void(const std::function<void()>& requireOwn)>& use);

/// The files that the arguments from the fourth word on name, as absolute paths; they need not
/// exist. Fails for a path that is no well-formed text, and for a relative one when there is no
/// current directory.
std::vector<std::string> filePaths(const Arguments& arguments);

/// Pastes files, through the clipboard, which the user has back afterwards. Throws InputFailure
/// when the clipboard or the paste refuses.
void pasteFiles(const std::vector<std::string>& paths, const KeyboardInput& input);

}  // namespace driver
