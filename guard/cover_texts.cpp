#include "guard/cover_texts.h"

#include <optional>
#include <vector>

#include "main/globals.h"
#include "platform/process.h"
#include "platform/text.h"

namespace driver {

namespace {

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

}  // namespace

void chooseGuardLanguage() { globals().guardChinese = wantsChinese(); }

std::string guardTitle(bool operating) {
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

}  // namespace driver
