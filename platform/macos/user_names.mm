#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"
#include "platform/process.h"

namespace process {

std::string fullUserName() {
  @autoreleasepool {
    return macos::textOrEmpty(NSFullUserName());
  }
}

std::string loginName() {
  @autoreleasepool {
    return macos::textOrEmpty(NSUserName());
  }
}

std::optional<std::string> givenName(const std::string& fullName) {
  @autoreleasepool {
    NSPersonNameComponentsFormatter* parser = [[NSPersonNameComponentsFormatter alloc] init];
    NSString* name = macos::foundationString(fullName);
    return macos::optionalText([parser personNameComponentsFromString:name].givenName);
  }
}

}  // namespace process
