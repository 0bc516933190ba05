#pragma once

#include "platform/macos/standins/instances.h"

/// References, pools, weak references and properties, as compiled Objective-C counts them.
namespace standins {

/// Has every weak reference to an object that goes be nil.
void clearWeakReferences(Id object);

/// Empties what pools this thread has open, as an outer one would. False when there are none.
bool closePools();

}  // namespace standins

extern "C" {
standins::Id objc_retain(standins::Id object);
void objc_release(standins::Id object);
standins::Id objc_retainBlock(standins::Id block);
void* objc_autoreleasePoolPush();
void objc_autoreleasePoolPop(void* pool);
}
