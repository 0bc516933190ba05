#include "platform/macos/standins/instances.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

#include "platform/macos/standins/blocks.h"
#include "platform/macos/standins/counting.h"
#include "platform/macos/standins/strings.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(start, bytes)
#define ASAN_UNPOISON_MEMORY_REGION(start, bytes)
#endif
#endif

namespace standins {

namespace {

// What stands before an object's memory, which stays aligned.
struct alignas(16) Place {
  Object* entry;
};

struct Instance : Object {
  explicit Instance(RuntimeClass* itsClass)
      : Object(Type::instance), itsClass(itsClass), memory(this, itsClass->data->bytes) {
    *static_cast<RuntimeClass**>(memory.get()) = itsClass;
  }
  std::string describe() const override { return itsClass->data->name; }
  void end() override {
    clearWeakReferences(memory.get());
    references.set(1);  // its methods may count it while it goes
    method<void (*)(Id, Selector)>(memory.get(), "dealloc")(memory.get(), "dealloc");
    if (references.count() != 1) noteMistake("kept while it goes: " + describe());
    references.set(0);
    memory.close();
  }
  RuntimeClass* itsClass;
  Memory memory;
};

// The classes of what Core Foundation makes.
const char* bridged(Type type) {
  switch (type) {
    case Type::array:
      return "NSMutableArray";
    case Type::dictionary:
      return "NSMutableDictionary";
    case Type::data:
      return "NSData";
    case Type::number:
    case Type::boolean:
      return "NSNumber";
    case Type::null:
      return "NSNull";
    case Type::string:
      return "NSString";
    default:
      return "NSObject";
  }
}

[[noreturn]] void complain(Id self, Selector selector) {
  std::fprintf(stderr, "%s does not understand %s\n", classOf(self)->data->name, selector);
  std::abort();
}

// A class's own method, not one of those above it.
const void* ownMethod(const RuntimeClass* itsClass, Selector selector) {
  const void* code = findMethod(itsClass, selector);
  const bool isInherited =
      itsClass->superclass != nullptr && code == findMethod(itsClass->superclass, selector);
  return isInherited ? nullptr : code;
}

// C++ variables, those of superclasses first.
void constructVariables(RuntimeClass* itsClass, Id object) {
  if (itsClass->superclass != nullptr) constructVariables(itsClass->superclass, object);
  const void* code = ownMethod(itsClass, ".cxx_construct");
  if (code == nullptr) return;
  reinterpret_cast<Id (*)(Id, Selector)>(const_cast<void*>(code))(object, ".cxx_construct");
}

}  // namespace

Memory::Memory(Object* entry, std::size_t bytes)
    : memory_(new char[sizeof(Place) + bytes]()), bytes_(bytes) {
  new (memory_.get()) Place{entry};
}

Memory::~Memory() { ASAN_UNPOISON_MEMORY_REGION(get(), bytes_); }

Id Memory::get() const { return memory_.get() + sizeof(Place); }

void Memory::close() {
  constexpr std::size_t header = sizeof(void*);
  if (bytes_ <= header) return;
  ASAN_POISON_MEMORY_REGION(static_cast<char*>(get()) + header, bytes_ - header);
}

bool isPlaced(const void* pointer) {
  const void* kind = *static_cast<void* const*>(pointer);
  return isHeapBlock(pointer) || (isClass(kind) && !isClass(pointer));
}

Object* placed(const void* pointer) { return (static_cast<const Place*>(pointer) - 1)->entry; }

RuntimeClass* classOf(Id object) {
  if (isClass(object)) return static_cast<RuntimeClass*>(object)->metaclass;
  if (isConstantString(object)) return classNamed("NSString");
  Object& entry = *checked(object);
  if (entry.type == Type::instance) return static_cast<Instance&>(entry).itsClass;
  return classNamed(bridged(entry.type));
}

const void* findMethodOf(Id self, Selector selector) {
  const void* code = findMethod(classOf(self), selector);
  if (code == nullptr) complain(self, selector);
  return code;
}

}  // namespace standins

using namespace standins;

extern "C" {

void standins_nothing();

// Messages: see messages.S.
const void* standins_method(Id self, Selector selector) {
  if (self == nullptr) return reinterpret_cast<const void*>(standins_nothing);
  return findMethodOf(self, selector);
}

const void* standins_methodAbove(const void* const* receiverAndClass, Selector selector) {
  const auto* below = static_cast<const RuntimeClass*>(receiverAndClass[1]);
  const void* code = findMethod(below->superclass, selector);
  if (code == nullptr) complain(const_cast<Id>(receiverAndClass[0]), selector);
  return code;
}

Id objc_alloc(RuntimeClass* itsClass) {
  layOutClasses();
  const Instance* instance = entered(new Instance(itsClass));
  constructVariables(itsClass, instance->memory.get());
  return instance->memory.get();
}

Id objc_alloc_init(RuntimeClass* itsClass) {
  Id object = objc_alloc(itsClass);
  return method<Id (*)(Id, Selector)>(object, "init")(object, "init");
}

Id objc_opt_class(Id object) { return object == nullptr ? nullptr : classOf(object); }

// Called by NSObject's dealloc.
void standins_destructVariables(Id object) {
  for (auto* each = classOf(object); each != nullptr; each = each->superclass) {
    const void* code = ownMethod(each, ".cxx_destruct");
    if (code == nullptr) continue;
    reinterpret_cast<void (*)(Id, Selector)>(const_cast<void*>(code))(object, ".cxx_destruct");
  }
}
}
