#include "guard/covers.h"

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "guard/cover_view.h"
#include "guard/grace.h"
#include "main/globals.h"
#include "platform/cover.h"
#include "platform/window_server.h"

namespace driver {

namespace {

/// Covers one screen. The title and the hint are remembered, to be changed later.
void coverScreen(const platform::Rect& frame, std::int64_t level) {
  const cover::Panel panel{frame, level, privacyScreen({frame.width, frame.height})};
  const std::size_t number = cover::show(panel);
  const auto& labels = panel.view.labels;
  globals().guardTitles.push_back({number, frame, labels[titleIndex]});
  globals().guardHints.push_back({number, frame, labels[hintIndex]});
}

// The language is the same for all covers that are made at once; a user may change it meanwhile.
void coverAll(const std::vector<platform::Rect>& frames, std::int64_t level) {
  chooseGuardLanguage();
  for (const platform::Rect& frame : frames) coverScreen(frame, level);
}

/// Gives labels another text.
void relabel(std::vector<CoverLabel>& labels, std::size_t index, const std::string& text) {
  for (CoverLabel& each : labels) {
    each.label = relabelled(each.label, text, each.screen.width);
    cover::setLabel(each.panel, index, text, each.label.frame);
  }
}

// The system moves panels of a display that goes, and leaves them there when it comes back.
void placeCovers() {
  for (const CoverLabel& title : globals().guardTitles) cover::place(title.panel, title.screen);
}

void closeCoversWithout(const std::vector<platform::Rect>& screens) {
  const auto isStale = [&](const CoverLabel& each) {
    return std::find(screens.begin(), screens.end(), each.screen) == screens.end();
  };
  for (const CoverLabel& title : globals().guardTitles) {
    if (isStale(title)) cover::close(title.panel);
  }
  std::erase_if(globals().guardTitles, isStale);
  std::erase_if(globals().guardHints, isStale);
}

std::string presentHint() {
  const std::int64_t left = graceSecondsLeft();
  return guardHint(left, !hasGrace());
}

void coverPresentScreens() {
  const std::vector<platform::Rect> screens = cover::screens();
  // Nothing to cover, and nothing to see: what comes back is as likely the same screen.
  if (screens.empty()) return;
  std::vector<platform::Rect> uncovered;
  for (const platform::Rect& screen : screens) {
    const auto& titles = globals().guardTitles;
    const bool isCovered = std::any_of(titles.begin(), titles.end(), [&](const CoverLabel& each) {
      return each.screen == screen;
    });
    if (!isCovered) uncovered.push_back(screen);
  }
  placeCovers();
  // The new covers first: at no moment is a screen bare.
  if (!uncovered.empty()) coverAll(uncovered, windowserver::shieldingLevel());
  closeCoversWithout(screens);
  // A new cover begins with the whole grace.
  if (hasGrace()) refreshGuardHints();
}

}  // namespace

std::size_t coverScreens() {
  const std::int64_t level = windowserver::shieldingLevel();
  const std::vector<platform::Rect> screens = cover::screens();
  coverAll(screens, level);
  return screens.size();
}

void followScreens() { cover::onScreenChange(coverPresentScreens); }

void setGuardOperating(bool operating) {
  if (operating == globals().guardOperating) return;
  globals().guardOperating = operating;
  relabel(globals().guardTitles, titleIndex, guardTitle(operating));
}

void refreshGuardHints() { relabel(globals().guardHints, hintIndex, presentHint()); }

}  // namespace driver
