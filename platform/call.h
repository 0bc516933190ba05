#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "base/datum.h"
#include "platform/ax.h"
#include "platform/quartz.h"
#include "platform/share.h"
#include "platform/types.h"
#include "platform/window_server.h"
#include "platform/workspace.h"

/// The seam as data: what the simulated side of the seam says to a simulated Mac, and how its
/// structures travel. Not part of the Mac's executable.
namespace platform {

/// Every function that asks the simulated Mac. Functions marked local in their headers do not.
enum class Function : std::uint8_t {
  uptime,
  sleep,
  environment,
  nullSignal,
  exit,
  fullUserName,
  loginName,
  givenName,
  writeOutput,
  replaceFile,
  listDirectory,
  fileExists,
  openLibrary,
  findSymbol,
  findLoadedSymbol,
  axAttribute,
  axAttributes,
  axActionNames,
  axElementAt,
  axPerform,
  axSetAttribute,
  axTrusted,
  createSource,
  createEvent,
  createMouseEvent,
  createScrollEvent,
  publicPost,
  privatePost,
  postRecord,
  processForPid,
  frontProcess,
  processPid,
  axGetWindow,
  windows,
  windowDescription,
  session,
  displayMode,
  captureAccess,
  application,
  applicationsWithBundle,
  applications,
  frontmost,
  unhide,
  activationPolicy,
  shareContent,
  screenshot,
  loadImage,
  pngOfImage,
  pixelsOfImage,
};

/// The functions' names in traces and fault descriptions, by their order above.
inline constexpr std::array<std::string_view, 49> functionNames = {
    "loop.uptime",
    "loop.sleep",
    "process.environment",
    "process.null-signal",
    "process.exit",
    "process.full-user-name",
    "process.login-name",
    "process.given-name",
    "streams.write-output",
    "streams.replace-file",
    "streams.list-directory",
    "streams.file-exists",
    "loader.open-library",
    "loader.find-symbol",
    "loader.find-loaded-symbol",
    "ax.attribute",
    "ax.attributes",
    "ax.action-names",
    "ax.element-at",
    "ax.perform",
    "ax.set-attribute",
    "ax.trusted",
    "quartz.create-source",
    "quartz.create-event",
    "quartz.create-mouse-event",
    "quartz.create-scroll-event",
    "quartz.post",
    "private.post",
    "private.post-record",
    "private.process-for-pid",
    "private.front-process",
    "private.process-pid",
    "private.ax-window",
    "windowserver.windows",
    "windowserver.description",
    "windowserver.session",
    "windowserver.display-mode",
    "windowserver.capture-access",
    "workspace.application",
    "workspace.applications-with-bundle",
    "workspace.applications",
    "workspace.frontmost",
    "workspace.unhide",
    "workspace.activation-policy",
    "share.content",
    "share.screenshot",
    "image.load",
    "image.png",
    "image.pixels",
};

static_assert(functionNames.size() == static_cast<std::size_t>(Function::pixelsOfImage) + 1);

/// One call of a seam function.
struct Call {
  Function function{};
  driver::Datum::List arguments;
};

/// Where calls go. One process has one channel.
class Channel {
 public:
  Channel() = default;
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;
  virtual ~Channel() = default;

  /// Makes the call and returns its answer once it is due. A platform error travels as an answer:
  /// see `Thrown`.
  virtual driver::Datum call(Call call) = 0;

  /// True when the simulated Mac keeps what is written to standard output; false when the process
  /// writes to its own descriptor.
  virtual bool keepsOutput() const = 0;

  /// Ends the process after the simulated Mac has been told.
  [[noreturn]] virtual void exit(int status) = 0;
};

/// An answer that may be a platform error: exactly one of the two is there.
struct Thrown {
  std::optional<std::string> error;
  driver::Datum value;
};

/// An element of the simulated Mac.
struct ElementReference {
  Pid pid = 0;
  std::int64_t id = 0;  // 0 is the application itself
  friend bool operator==(const ElementReference&, const ElementReference&) = default;
};

/// The kinds of attribute values as they travel: a list of this number and the payload.
enum class ValueKind : std::uint8_t {
  opaque,  // integer: its hash
  text,
  boolean,
  integer,
  number,
  element,  // ElementReference
  list,     // list of values
  point,
  size,
  rect,
  range,
};

/// One attribute as it travels; `value` is nothing when there is none.
struct WireSlot {
  driver::Datum value;
  ax::Error error = ax::Error::success;
};

/// What an accessibility message gave.
struct WireReadings {
  std::vector<WireSlot> slots;
  ax::Outcome outcome;
};

/// What a read of action names gave.
struct WireActionNames {
  std::vector<std::string> names;
  ax::Outcome outcome;
};

/// What lies at a point.
struct WireHit {
  std::optional<ElementReference> element;
  ax::Outcome outcome;
};

struct EventField {
  std::uint32_t field = 0;
  std::int64_t value = 0;
};

/// An event as it is when it is posted.
struct EventImage {
  std::int64_t identity = 0;  // the same for every posting of one event
  std::uint32_t type = 0;
  Point location;
  bool flagsCleared = false;
  bool fromSource = false;
  std::optional<Point> windowLocation;
  std::vector<EventField> publicFields;   // written with the public setter
  std::vector<EventField> privateFields;  // written with the private setter
  std::int32_t vertical = 0;              // scroll lines
  std::int32_t horizontal = 0;
};

/// A screenshot's filter as it travels.
struct WireFilter {
  std::int32_t kind = 0;  // the index in share::Filter
  std::uint32_t display = 0;
  std::vector<WindowNumber> windows;
};

/// Shareable content as it travels.
struct WireContent {
  std::vector<share::Window> windows;
  std::vector<share::Display> displays;
};

}  // namespace platform

namespace driver {

template <>
struct Members<Point> {
  static constexpr auto members = std::tuple{&Point::x, &Point::y};
};
template <>
struct Members<Size> {
  static constexpr auto members = std::tuple{&Size::width, &Size::height};
};
template <>
struct Members<Rect> {
  static constexpr auto members = std::tuple{&Rect::x, &Rect::y, &Rect::width, &Rect::height};
};
template <>
struct Members<ax::Range> {
  static constexpr auto members = std::tuple{&ax::Range::location, &ax::Range::length};
};
template <>
struct Members<ax::Outcome> {
  static constexpr auto members = std::tuple{&ax::Outcome::error, &ax::Outcome::timedOut};
};
template <>
struct Members<platform::Thrown> {
  static constexpr auto members = std::tuple{&platform::Thrown::error, &platform::Thrown::value};
};
template <>
struct Members<platform::ElementReference> {
  static constexpr auto members =
      std::tuple{&platform::ElementReference::pid, &platform::ElementReference::id};
};
template <>
struct Members<platform::WireSlot> {
  static constexpr auto members =
      std::tuple{&platform::WireSlot::value, &platform::WireSlot::error};
};
template <>
struct Members<platform::WireReadings> {
  static constexpr auto members =
      std::tuple{&platform::WireReadings::slots, &platform::WireReadings::outcome};
};
template <>
struct Members<platform::WireActionNames> {
  static constexpr auto members =
      std::tuple{&platform::WireActionNames::names, &platform::WireActionNames::outcome};
};
template <>
struct Members<platform::WireHit> {
  static constexpr auto members =
      std::tuple{&platform::WireHit::element, &platform::WireHit::outcome};
};

// An event's fields travel as one flat list: every post carries a dozen.
template <>
inline Datum pack(const std::vector<platform::EventField>& fields) {
  Datum::List list;
  list.reserve(2 * fields.size());
  for (const auto& [field, value] : fields) {
    list.emplace_back(static_cast<std::int64_t>(field));
    list.emplace_back(value);
  }
  return Datum(std::move(list));
}
template <>
inline std::vector<platform::EventField> unpack(const Datum& datum) {
  const auto& list = datum_detail::as<Datum::List>(datum);
  if (list.size() % 2 != 0) throw MalformedDatum();
  std::vector<platform::EventField> fields;
  fields.reserve(list.size() / 2);
  for (std::size_t i = 0; i < list.size(); i += 2) {
    fields.push_back({unpack<std::uint32_t>(list[i]), unpack<std::int64_t>(list[i + 1])});
  }
  return fields;
}
template <>
struct Members<platform::EventImage> {
  using Event = platform::EventImage;
  static constexpr auto members = std::tuple{
      &Event::identity,   &Event::type,           &Event::location,     &Event::flagsCleared,
      &Event::fromSource, &Event::windowLocation, &Event::publicFields, &Event::privateFields,
      &Event::vertical,   &Event::horizontal};
};
template <>
struct Members<platform::WireFilter> {
  static constexpr auto members = std::tuple{
      &platform::WireFilter::kind, &platform::WireFilter::display, &platform::WireFilter::windows};
};
template <>
struct Members<share::Owner> {
  static constexpr auto members =
      std::tuple{&share::Owner::pid, &share::Owner::bundleIdentifier, &share::Owner::name};
};
template <>
struct Members<share::Window> {
  static constexpr auto members =
      std::tuple{&share::Window::number, &share::Window::frame, &share::Window::title,
                 &share::Window::layer, &share::Window::owner};
};
template <>
struct Members<share::Display> {
  static constexpr auto members = std::tuple{&share::Display::id, &share::Display::frame};
};
template <>
struct Members<platform::WireContent> {
  static constexpr auto members =
      std::tuple{&platform::WireContent::windows, &platform::WireContent::displays};
};
template <>
struct Members<share::Configuration> {
  static constexpr auto members =
      std::tuple{&share::Configuration::width, &share::Configuration::height,
                 &share::Configuration::source, &share::Configuration::backgroundGrey};
};
template <>
struct Members<windowserver::Window> {
  using Window = windowserver::Window;
  static constexpr auto members =
      std::tuple{&Window::number, &Window::ownerPid, &Window::layer, &Window::name,
                 &Window::x,      &Window::y,        &Window::width, &Window::height};
};
template <>
struct Members<windowserver::Session> {
  static constexpr auto members =
      std::tuple{&windowserver::Session::locked, &windowserver::Session::onConsole};
};
template <>
struct Members<windowserver::DisplayMode> {
  static constexpr auto members =
      std::tuple{&windowserver::DisplayMode::width, &windowserver::DisplayMode::pixelWidth};
};
template <>
struct Members<workspace::Application> {
  using Application = workspace::Application;
  static constexpr auto members =
      std::tuple{&Application::pid,        &Application::bundleIdentifier, &Application::name,
                 &Application::bundlePath, &Application::active,           &Application::hidden};
};

}  // namespace driver
