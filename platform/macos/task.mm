#import <Foundation/Foundation.h>
#include <pthread.h>

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <utility>

#include "platform/loop.h"

namespace loop {

namespace {

using Task = std::function<void()>;

// As the main thread has it. Any other thread gets half a megabyte if nothing is said.
constexpr std::size_t stackBytes = std::size_t{8} * 1024 * 1024;

void* carryOut(void* context) {
  const std::unique_ptr<Task> task(static_cast<Task*>(context));
  @autoreleasepool {
    (*task)();
  }
  return nullptr;
}

}  // namespace

void startTask(std::function<void()> task) {
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
  pthread_attr_setstacksize(&attributes, stackBytes);
  pthread_t thread = {};
  const int error = pthread_create(&thread, &attributes, carryOut, new Task(std::move(task)));
  pthread_attr_destroy(&attributes);
  if (error != 0) std::abort();
}

void doRound(const std::function<void()>& work) {
  @autoreleasepool {
    work();
  }
}

}  // namespace loop
