// The user and the system.
#include "platform/macos/standins/user.h"

#import <Foundation/Foundation.h>

#include <cstdio>
#include <utility>

#include "platform/macos/standins/foundation.h"
#include "platform/macos/standins/text.h"

using standins::foundationText;
using standins::optionalText;
using standins::plainText;

namespace {

constexpr NSOperatingSystemVersion newest = {26, 0, 0};

struct User {
  std::optional<std::string> fullName;
  std::optional<std::string> loginName;
  NSOperatingSystemVersion version = newest;
};

User& user() {
  static auto& user = *new User;
  return user;
}

}  // namespace

NSString* NSFullUserName() { return optionalText(user().fullName); }
NSString* NSUserName() { return optionalText(user().loginName); }

@implementation NSProcessInfo
+ (NSProcessInfo*)processInfo {
  return [[NSProcessInfo alloc] init];
}
- (NSOperatingSystemVersion)operatingSystemVersion {
  return user().version;
}
@end

// What @available asks: "macOS 14.2", say. The answer is text or nil.
@implementation NSString (StandinAvailability)
+ (instancetype)stringWithUTF8String:(const char*)text {
  long major = 0;
  long minor = 0;
  if (std::sscanf(text, "macOS %ld.%ld", &major, &minor) < 1) standins::raise(text);
  const NSOperatingSystemVersion& has = user().version;
  const bool isReached = std::pair(has.majorVersion, has.minorVersion) >=
                         std::pair<NSInteger, NSInteger>(major, minor);
  return isReached ? (__bridge NSString*)CFSTR("reached") : nil;
}
@end

@implementation NSPersonNameComponents
@end
@implementation NSFormatter
@end
@implementation NSPersonNameComponentsFormatter
- (NSPersonNameComponents*)personNameComponentsFromString:(NSString*)string {
  const std::string name = plainText(string);
  if (name.empty()) return nil;
  NSPersonNameComponents* parts = [[NSPersonNameComponents alloc] init];
  const std::size_t blank = name.find(' ');
  if (blank != std::string::npos) parts.givenName = foundationText(name.substr(0, blank));
  return parts;
}
@end

namespace standins {

void setUser(std::optional<std::string> full, std::optional<std::string> login) {
  user().fullName = std::move(full);
  user().loginName = std::move(login);
}

void setVersion(long major, long minor) { user().version = {major, minor, 0}; }

void setNewestVersion() { user().version = newest; }

}  // namespace standins
