#pragma once

#include <cstddef>
#include <cstdint>

/// What the compiler writes down of classes for the Mac's runtime, and what is found in it.
namespace standins {

struct MethodList {
  struct Method {
    const char* name;
    const char* types;
    const void* code;
  };
  std::uint32_t entryBytes;
  std::uint32_t count;
  // The methods follow.
  const Method* methods() const { return reinterpret_cast<const Method*>(this + 1); }
};

struct VariableList {
  struct Variable {
    std::ptrdiff_t* offset;
    const char* name;
    const char* type;
    std::uint32_t alignmentShift;
    std::uint32_t bytes;
  };
  std::uint32_t entryBytes;
  std::uint32_t count;
  // The variables follow.
  const Variable* variables() const { return reinterpret_cast<const Variable*>(this + 1); }
};

struct ClassData {
  std::uint32_t flags;
  std::uint32_t start;
  std::uint32_t bytes;
  std::uint32_t reserved;
  const void* layout;
  const char* name;
  const MethodList* methods;
  const void* protocols;
  const VariableList* variables;
  const void* weakLayout;
  const void* properties;
};

struct RuntimeClass {
  RuntimeClass* metaclass;
  RuntimeClass* superclass;
  void* cache;
  void* table;
  ClassData* data;
};

/// True for the address of a class of this program.
bool isClass(const void* pointer);

/// The class of this name; it must be there.
RuntimeClass* classNamed(const char* name);

/// Gives every class room for the variables of its superclasses, which may have more of them than a
/// header says. Before the first instance is made.
void layOutClasses();

/// The method that a class answers a message with, in the first class from this one upwards that
/// has it; null when there is none.
const void* findMethod(const RuntimeClass* itsClass, const char* selector);

}  // namespace standins
