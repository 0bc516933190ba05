#include "platform/macos/standins/blocks.h"

#include <cstdlib>
#include <cstring>

#include "platform/macos/standins/counting.h"
#include "platform/macos/standins/instances.h"
#include "platform/macos/standins/objects.h"

extern "C" {
extern void* _NSConcreteStackBlock[32];
extern void* _NSConcreteGlobalBlock[32];
extern void* _NSConcreteMallocBlock[32];
void* _NSConcreteStackBlock[32];
void* _NSConcreteGlobalBlock[32];
void* _NSConcreteMallocBlock[32];
}

namespace standins {

namespace {

struct Descriptor {
  unsigned long reserved;
  unsigned long bytes;
  void (*copy)(void* to, const void* from);  // these two only where the flags say so
  void (*dispose)(const void* block);
};

// As the compiler lays it out. What the block has captured follows.
struct Block {
  void* kind;
  int flags;
  int reserved;
  void (*code)(void*, ...);
  const Descriptor* descriptor;
};

constexpr int hasHelpers = 1 << 25;

// What a helper is asked to copy or to dispose of.
constexpr int fieldIsObject = 3;
constexpr int fieldIsBlock = 7;

struct HeapBlock : Object {
  explicit HeapBlock(const Block* block)
      : Object(Type::block), memory(this, block->descriptor->bytes) {
    std::memcpy(memory.get(), block, block->descriptor->bytes);
    auto* copy = static_cast<Block*>(memory.get());
    copy->kind = _NSConcreteMallocBlock;
    if ((copy->flags & hasHelpers) != 0) copy->descriptor->copy(copy, block);
  }
  std::string describe() const override { return "block"; }
  void end() override {
    auto* block = static_cast<Block*>(memory.get());
    if ((block->flags & hasHelpers) != 0) block->descriptor->dispose(block);
    memory.close();
  }
  Memory memory;
};

const void* kindOf(const void* pointer) { return *static_cast<void* const*>(pointer); }

}  // namespace

bool isHeapBlock(const void* pointer) { return kindOf(pointer) == _NSConcreteMallocBlock; }

bool isUncountedBlock(const void* pointer) {
  return kindOf(pointer) == _NSConcreteGlobalBlock || kindOf(pointer) == _NSConcreteStackBlock;
}

bool isBlock(const void* pointer) { return isHeapBlock(pointer) || isUncountedBlock(pointer); }

}  // namespace standins

using namespace standins;

extern "C" {

Id objc_retainBlock(Id block) {
  if (block == nullptr || kindOf(block) == _NSConcreteGlobalBlock) return block;
  if (isHeapBlock(block)) return objc_retain(block);
  return entered(new HeapBlock(static_cast<const Block*>(block)))->memory.get();
}

Id _Block_copy(Id block) { return objc_retainBlock(block); }
void _Block_release(Id block) { objc_release(block); }

void _Block_object_assign(Id* to, Id object, int flags) {
  if (flags == fieldIsObject) {
    *to = objc_retain(object);
  } else if (flags == fieldIsBlock) {
    *to = objc_retainBlock(object);
  } else {
    std::abort();  // a variable shared with a block, which no adapter has
  }
}

void _Block_object_dispose(Id object, int) { objc_release(object); }
}
