#include "platform/cover.h"

#include <utility>

#include "platform/simulated/channel.h"
#include "platform/simulated/loop.h"
#include "platform/simulated/process_state.h"

namespace cover {

using platform::Function;
using simulated::ask;
using simulated::askFor;
using simulated::state;

namespace {

platform::WirePanel wireOf(const Panel& panel) {
  platform::WirePanel wire{
      panel.frame, panel.level, panel.view.dimmingAlpha, {}, panel.view.labels};
  for (const Picture& picture : panel.view.pictures) {
    wire.pictures.push_back(
        {simulated::objectOf<std::int64_t>(picture.image), picture.frame, picture.isRound});
  }
  return wire;
}

}  // namespace

std::vector<platform::Rect> screens() {
  return askFor<std::vector<platform::Rect>>(Function::screens);
}

platform::Size measure(const std::string& text, const Font& font) {
  return askFor<platform::Size>(Function::measureText, text, font);
}

std::size_t show(const Panel& panel) {
  return askFor<std::size_t>(Function::showPanel, wireOf(panel));
}

void setLabel(std::size_t panel, std::size_t label, const std::string& text,
              const platform::Rect& frame) {
  ask(Function::setPanelLabel, panel, label, text, frame);
}

void place(std::size_t panel, const platform::Rect& frame) {
  ask(Function::placePanel, panel, frame);
}

void close(std::size_t panel) { ask(Function::closePanel, panel); }

void onScreenChange(std::function<void()> handler) {
  state().mainIsServed = true;
  state().screenChangeHandler = std::move(handler);
}

void onTerminationRequest(std::function<void()> handler) {
  state().mainIsServed = true;
  state().terminationHandler = std::move(handler);
}

void runApplication() { simulated::serveMainFlow(); }

}  // namespace cover
