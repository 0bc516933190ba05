#include "input/chromium.h"

#include <optional>
#include <string>
#include <vector>

#include "platform/streams.h"

namespace driver {

bool isChromium(const workspace::Application& app) {
  if (!app.bundlePath) return false;
  // Bundles of one maker have many identifiers, and makers are many; the engine's resources have
  // one name in all of them.
  const std::string frameworks = *app.bundlePath + "/Contents/Frameworks";
  const std::optional<std::vector<std::string>> names = streams::listDirectory(frameworks);
  if (!names) return false;
  for (const std::string& name : *names) {
    const std::string framework = frameworks + "/" + name;
    if (streams::fileExists(framework + "/Resources/chrome_100_percent.pak")) return true;
  }
  return false;
}

}  // namespace driver
