// Loads the libraries of private functions as driver does, and looks for each function.
#include <dlfcn.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "support/answer.h"

namespace {

struct Library {
  const char* path;
  std::vector<const char*> functions;
};

const std::vector<Library> libraries = {
    {"/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight",
     {"SLEventPostToPid", "SLEventSetIntegerValueField", "SLPSPostEventRecordTo"}},
    {"/System/Library/PrivateFrameworks/login.framework/Versions/Current/login",
     {"SACLockScreenImmediate"}},
    {"/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices",
     {"_AXUIElementGetWindow", "GetProcessForPID", "GetFrontProcess", "GetProcessPID"}},
};

}  // namespace

int main(int count, char** words) {
  probe::Evidence evidence;
  bool complete = true;
  for (const Library& library : libraries) {
    void* const opened = dlopen(library.path, RTLD_LAZY);
    struct stat file;
    const bool isFile = stat(library.path, &file) == 0;
    evidence.add(library.path, std::string(opened != nullptr ? "loaded" : "not loaded") +
                                   (isFile ? ", a file" : ", no file"));
    complete = complete && opened != nullptr;
    for (const char* const function : library.functions) {
      const bool isThere = opened != nullptr && dlsym(opened, function) != nullptr;
      evidence.add(function, isThere);
      complete = complete && isThere;
    }
  }
  void* const skyLight = dlopen(libraries[0].path, RTLD_LAZY);
  constexpr const char* setter = "CGEventSetWindowLocation";
  const bool bySkyLight = skyLight != nullptr && dlsym(skyLight, setter) != nullptr;
  const bool amongLoaded = dlsym(RTLD_DEFAULT, setter) != nullptr;
  evidence.add("CGEventSetWindowLocation through SkyLight", bySkyLight);
  evidence.add("CGEventSetWindowLocation among what is loaded", amongLoaded);
  complete = complete && (bySkyLight || amongLoaded);
  return probe::answer(probe::asked(count, words), probe::verdictOf(complete), evidence);
}
