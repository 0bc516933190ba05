#pragma once

namespace standins {

/// True for a block of any kind; for one that was copied, which is counted; for one that is not
/// counted, since it lies in the program's own data or in a frame.
bool isBlock(const void* pointer);
bool isHeapBlock(const void* pointer);
bool isUncountedBlock(const void* pointer);

}  // namespace standins
