#import <Foundation/Foundation.h>

#include <thread>
#include <utility>

#include "platform/loop.h"

namespace loop {

void startTask(std::function<void()> task) {
  std::thread([task = std::move(task)] {
    @autoreleasepool {
      task();
    }
  }).detach();
}

}  // namespace loop
