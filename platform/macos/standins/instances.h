#pragma once

#include <cstddef>
#include <memory>

#include "platform/macos/standins/classes.h"
#include "platform/macos/standins/objects.h"

/// What compiled Objective-C has of the runtime: instances of classes, which are entered in the
/// books as other objects are.
namespace standins {

using Id = void*;
using Selector = const char*;

/// The memory of an object that Objective-C sees. Its entry in the books stands before it.
class Memory {
 public:
  Memory(Object* entry, std::size_t bytes);
  ~Memory();
  Memory(const Memory&) = delete;
  Memory& operator=(const Memory&) = delete;

  Id get() const;

  /// From now on only its class can be read.
  void close();

 private:
  std::unique_ptr<char[]> memory_;
  std::size_t bytes_;
};

/// True for what an Objective-C class or a block has made.
bool isPlaced(const void* pointer);

/// Its entry.
Object* placed(const void* pointer);

/// The class of any object, of Core Foundation's ones too, or of a class.
RuntimeClass* classOf(Id object);

/// The method with which an object answers a message. A message that it does not understand ends
/// the process.
template <class Function>
Function method(Id self, Selector selector);
const void* findMethodOf(Id self, Selector selector);

template <class Function>
Function method(Id self, Selector selector) {
  return reinterpret_cast<Function>(const_cast<void*>(findMethodOf(self, selector)));
}

}  // namespace standins
