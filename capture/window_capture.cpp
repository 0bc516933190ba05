#include "capture/window_capture.h"

#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "accessibility/info.h"
#include "base/geometry.h"
#include "capture/choice.h"
#include "capture/window_image.h"
#include "main/ending.h"
#include "main/state_queries.h"
#include "platform/image.h"
#include "platform/share.h"
#include "platform/streams.h"
#include "platform/window_server.h"

namespace driver {

namespace {

constexpr double defaultScale = 2.0;    // pixels per point, of the displays that Macs are sold with
constexpr double backgroundGrey = 0.5;  // where no window is drawn: no page, and no dark window

/// What the picture shows.
struct Scene {
  share::Window anchor;
  share::Display display;
  Rect area;  // global points
  std::vector<share::Window> drawn;
  std::vector<share::Window> elsewhere;  // the application's windows on other displays
};

Value::Object describe(const share::Window& window) {
  const share::Owner owner = window.owner.value_or(share::Owner{});
  Value::Object entry = geometryOf(window.frame);
  entry.insert({{"title", window.title.value_or("")},
                {"owner", owner.name},
                {"layer", window.layer},
                {"bundle", owner.bundleIdentifier}});
  return entry;
}

/// The helper windows over `area`: each process is asked for once. A regular application that lies
/// over the target is another program, not a helper of this one.
std::vector<share::Window> helperWindows(const share::Content& content, platform::Pid pid,
                                         const Rect& area) {
  std::vector<share::Window> helpers = helperCandidates(content.windows, pid, area);
  std::map<platform::Pid, bool> regular;
  std::erase_if(helpers, [&](const share::Window& window) {
    const platform::Pid owner = window.owner->pid;
    const auto known = regular.find(owner);
    if (known != regular.end()) return known->second;
    return regular.emplace(owner, isRegularApp(owner)).first->second;
  });
  return helpers;
}

Scene sceneOf(const share::Content& content, const std::vector<share::Window>& kept,
              platform::Pid pid) {
  const auto frontToBack = windowserver::windows(windowserver::Windows::onScreen);
  Scene scene{mainWindow(kept, frontToBack.value_or(std::vector<windowserver::Window>{}), pid),
              {},
              {},
              {},
              {}};
  const std::optional<share::Display> display = displayFor(scene.anchor.frame, content.displays);
  if (!display) fail("no display");
  scene.display = *display;
  for (const share::Window& window : kept) {
    const bool shown = overlap(window.frame, display->frame);
    (shown ? scene.drawn : scene.elsewhere).push_back(window);
  }
  if (scene.drawn.empty()) fail("no window on the display");
  const std::vector<share::Window> helpers =
      helperWindows(content, pid, unionOfFrames(scene.drawn));
  scene.drawn.insert(scene.drawn.end(), helpers.begin(), helpers.end());
  // A picture is of one display: what hangs over its edge is not drawn anywhere.
  const auto area = intersection(unionOfFrames(scene.drawn), display->frame);
  if (!area) fail("no window on the display");
  scene.area = *area;
  return scene;
}

double scaleOf(windowserver::DisplayId display) {
  const std::optional<windowserver::DisplayMode> mode = windowserver::displayMode(display);
  if (!mode || mode->width == 0) return defaultScale;
  return static_cast<double>(mode->pixelWidth) / static_cast<double>(mode->width);
}

image::Image pictureOf(const share::Content& content, const Scene& scene) {
  const double scale = scaleOf(scene.display.id);
  share::IncludingFilter filter{scene.display.id, {}};
  for (const share::Window& window : scene.drawn) filter.windows.push_back(window.number);
  share::Configuration configuration;
  configuration.width = pixelCount(scale * scene.area.width);
  configuration.height = pixelCount(scale * scene.area.height);
  configuration.source =
      Rect{scene.area.x - scene.display.frame.x, scene.area.y - scene.display.frame.y,
           scene.area.width, scene.area.height};
  configuration.backgroundGrey = backgroundGrey;
  holdBackIfEnding();
  return share::screenshot(content, filter, configuration);
}

bool replacesFile(const std::string& path, const platform::Bytes& contents) {
  const Act act;  // half of it would leave the new file beside the old one
  return streams::replaceFile(path, contents);
}

void writePicture(const image::Image& picture, const std::string& path) {
  // Whole, then in place of the old one: nobody reads half a picture, and a failure leaves the old.
  const std::optional<platform::Bytes> encoded = image::png(picture);
  if (!encoded || !replacesFile(path, *encoded)) fail("cannot write " + path);
}

Reply replyFor(const workspace::Application& app, const Scene& scene) {
  Value::Object anchor = geometryOf(scene.anchor.frame);
  anchor.emplace("id", scene.anchor.number);
  Value::List drawn;
  for (const share::Window& window : scene.drawn) drawn.push_back(describe(window));
  Value::List elsewhere;
  for (const share::Window& window : scene.elsewhere) {
    elsewhere.push_back(window.title.value_or(""));
  }
  return {{"ok", true},
          {"running", true},
          {"name", app.name.value_or("")},
          {"active", app.active},
          {"rect", geometryOf(scene.area)},
          {"anchor", std::move(anchor)},
          {"windows", std::move(drawn)},
          {"otherDisplayWindows", std::move(elsewhere)}};
}

}  // namespace

Reply capture(const std::string& app, const std::string& path) {
  const std::optional<workspace::Application> target = runningApp(app);
  // An answer, not a failure: a caller may ask for a picture to learn whether there is anything.
  if (!target) return {{"ok", true}, {"running", false}};
  const share::Content content =
      share::content(share::DesktopWindows::excluded, share::Shown::onScreen);
  const std::vector<share::Window> kept = keptWindows(content.windows, target->pid);
  if (kept.empty()) {
    return {{"ok", true}, {"running", true}, {"rect", Value()}, {"windows", Value::List{}}};
  }
  const Scene scene = sceneOf(content, kept, target->pid);
  writePicture(pictureOf(content, scene), path);
  return replyFor(*target, scene);
}

}  // namespace driver
