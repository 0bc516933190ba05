#import <Foundation/Foundation.h>

#include "platform/process.h"

namespace process {

Version operatingSystemVersion() {
  @autoreleasepool {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return {static_cast<int>(version.majorVersion), static_cast<int>(version.minorVersion)};
  }
}

}  // namespace process
