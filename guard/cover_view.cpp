#include "guard/cover_view.h"

#include <optional>
#include <vector>

#include "guard/grace.h"
#include "main/globals.h"
#include "platform/process.h"
#include "platform/text.h"

namespace driver {

namespace {

// The variable is a switch with one word; the user's languages are tags such as "zh-Hans-CN".
bool wantsChinese() {
  const std::optional<std::string> language = process::environment("ZENTROVE_DESK_LANG");
  if (language) return *language == "zh";
  const std::vector<std::string> languages = process::preferredLanguages();
  return !languages.empty() && text::lowercase(languages.front()).starts_with("zh");
}

std::string personaTitle(bool operating) {
  const std::string& name = globals().guardOruName;
  if (globals().guardChinese) {
    return operating ? "Oru 正在替 " + name + " 用这台 Mac" : "Oru 在替 " + name + " 看着这台 Mac";
  }
  return (operating ? "Oru is using this Mac for " : "Oru is minding this Mac for ") + name;
}

using cover::Font;
using cover::Weight;

constexpr double dimmingAlpha = 0.55;
constexpr double baseAboveMiddle = 40;

constexpr double faceSide = 148;
constexpr double faceBelowBase = 8;
constexpr double pictureSide = 112;
constexpr double badgeSide = 48;
constexpr double badgeRightOfMiddle = 16;
constexpr double badgeBelowBase = 8;

constexpr Font titleFont = {26, Weight::semibold};
constexpr double titleAlpha = 0.92;
constexpr double titleBelowBase = 56;
constexpr Font hintFont = {15, Weight::medium};
constexpr double hintAlpha = 0.62;
constexpr double hintBelowBase = 86;
constexpr Font footerFont = {12, Weight::medium};
constexpr double footerAlpha = 0.4;
constexpr double footerBottom = 40;

/// The persona's face alone; or the user in a circle, with the icon as a badge; or the icon in the
/// circle.
std::vector<cover::Picture> pictures(double middle, double base) {
  if (globals().guardOruFace) {
    return {{*globals().guardOruFace,
             {middle - faceSide / 2, base - faceBelowBase, faceSide, faceSide},
             false}};
  }
  const auto& user = globals().guardUserPicture;
  const auto& icon = globals().guardAppIcon;
  const auto& main = user ? user : icon;
  std::vector<cover::Picture> shown;
  if (main) {
    shown.push_back({*main, {middle - pictureSide / 2, base, pictureSide, pictureSide}, true});
  }
  // Beside the user's own picture only: an icon would be a badge of itself.
  if (user && icon) {
    shown.push_back(
        {*icon, {middle + badgeRightOfMiddle, base - badgeBelowBase, badgeSide, badgeSide}, false});
  }
  return shown;
}

platform::Rect centred(const platform::Size& size, double middle, double bottom) {
  return {middle - size.width / 2, bottom, size.width, size.height};
}

cover::Label labelled(const std::string& text, const Font& font, double alpha, double middle,
                      double bottom) {
  return {text, font, alpha, centred(cover::measure(text, font), middle, bottom)};
}

}  // namespace

void chooseGuardLanguage() { globals().guardChinese = wantsChinese(); }

std::string guardTitle(bool operating) {
  // By the face alone: a name without one would speak of somebody whom the user does not see.
  if (globals().guardOruFace) return personaTitle(operating);
  if (globals().guardChinese) {
    return operating ? "Zentrove Desk 正在替你用这台 Mac" : "Zentrove Desk 在替你看着这台 Mac";
  }
  return operating ? "Zentrove Desk is using this Mac for you"
                   : "Zentrove Desk is minding this Mac";
}

std::string guardHint(std::int64_t graceLeft, bool noGrace) {
  const bool chinese = globals().guardChinese;
  if (noGrace || graceLeft < 1) {
    return chinese ? "碰一下键盘或鼠标就锁屏" : "Press any key or move the mouse to lock";
  }
  const std::string seconds = std::to_string(graceLeft);
  return chinese ? seconds + " 秒内按键或点一下，回到 Kelto"
                 : "Press a key or click within " + seconds + " seconds to go back to Kelto";
}

std::string guardFooter() {
  return globals().guardChinese ? "替你看着 · 你去玩吧"
                                : "Keeping an eye on things · Go enjoy yourself";
}

cover::View privacyScreen(const platform::Size& size) {
  const double middle = size.width / 2;
  const double base = size.height / 2 + baseAboveMiddle;
  const double grace = globals().guardGrace;
  cover::View view{size, dimmingAlpha, pictures(middle, base), {}};
  view.labels.push_back(labelled(guardTitle(globals().guardOperating), titleFont, titleAlpha,
                                 middle, base - titleBelowBase));
  view.labels.push_back(labelled(guardHint(secondsRoundedUp(grace), grace <= 0), hintFont,
                                 hintAlpha, middle, base - hintBelowBase));
  view.labels.push_back(labelled(guardFooter(), footerFont, footerAlpha, middle, footerBottom));
  return view;
}

cover::Label relabelled(const cover::Label& label, const std::string& text, double coverWidth) {
  return labelled(text, label.font, label.alpha, coverWidth / 2, label.frame.y);
}

}  // namespace driver
