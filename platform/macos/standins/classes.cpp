#include "platform/macos/standins/classes.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>

struct CategoryEntry {
  const char* name;
  standins::RuntimeClass* extended;
  const standins::MethodList* methods;
  const standins::MethodList* classMethods;
};

// The linker gathers what the compiler wrote.
extern "C" {
extern standins::RuntimeClass* __start_objc_classlist[];
extern standins::RuntimeClass* __stop_objc_classlist[];
extern CategoryEntry* __start_objc_catlist[] __attribute__((weak));
extern CategoryEntry* __stop_objc_catlist[] __attribute__((weak));
// Looked at by classes only.
extern void* _objc_empty_cache;
void* _objc_empty_cache = nullptr;
}

namespace standins {

namespace {

const void* inList(const MethodList* list, const char* selector) {
  if (list == nullptr) return nullptr;
  for (std::uint32_t i = 0; i < list->count; ++i) {
    if (std::strcmp(list->methods()[i].name, selector) == 0) return list->methods()[i].code;
  }
  return nullptr;
}

const void* inCategories(const RuntimeClass* itsClass, const char* selector) {
  for (CategoryEntry** each = __start_objc_catlist; each != __stop_objc_catlist; ++each) {
    const MethodList* methods = nullptr;
    if ((*each)->extended == itsClass) methods = (*each)->methods;
    if ((*each)->extended->metaclass == itsClass) methods = (*each)->classMethods;
    if (const void* code = inList(methods, selector)) return code;
  }
  return nullptr;
}

void move(const ClassData* data, std::ptrdiff_t distance) {
  if (data->variables == nullptr) return;
  for (std::uint32_t i = 0; i < data->variables->count; ++i) {
    *data->variables->variables()[i].offset += distance;
  }
}

void layOut(RuntimeClass* itsClass, std::set<RuntimeClass*>& done) {
  if (itsClass->superclass == nullptr || !done.insert(itsClass).second) return;
  layOut(itsClass->superclass, done);
  ClassData* data = itsClass->data;
  constexpr std::uint32_t alignment = 16;
  const std::uint32_t room = itsClass->superclass->data->bytes;
  if (room <= data->start) return;
  const std::uint32_t distance = (room - data->start + alignment - 1) / alignment * alignment;
  move(data, distance);
  data->start += distance;
  data->bytes += distance;
}

}  // namespace

bool isClass(const void* pointer) {
  return std::find(__start_objc_classlist, __stop_objc_classlist, pointer) != __stop_objc_classlist;
}

RuntimeClass* classNamed(const char* name) {
  const auto found = std::find_if(
      __start_objc_classlist, __stop_objc_classlist,
      [&](const RuntimeClass* each) { return std::strcmp(each->data->name, name) == 0; });
  if (found == __stop_objc_classlist) std::abort();
  return *found;
}

void layOutClasses() {
  static std::once_flag once;
  std::call_once(once, [] {
    std::set<RuntimeClass*> done;
    for (auto** each = __start_objc_classlist; each != __stop_objc_classlist; ++each) {
      layOut(*each, done);
    }
  });
}

const void* findMethod(const RuntimeClass* itsClass, const char* selector) {
  for (; itsClass != nullptr; itsClass = itsClass->superclass) {
    if (const void* code = inCategories(itsClass, selector)) return code;
    if (const void* code = inList(itsClass->data->methods, selector)) return code;
  }
  return nullptr;
}

}  // namespace standins
