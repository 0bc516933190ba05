#include "tests/support/every_command.h"

#include <algorithm>

#include "simulator/text/parse.h"
#include "tests/support/temporary_folder.h"

namespace testing_support {

namespace {

constexpr const char* everyDesk = R"(
    display 1 400x300 scale 1
    process 900
    pasteboard item "public.utf8-plain-text" "old" "public.rtf" "{old}"
    pasteboard item "public.png" "picture"
    app Browser pid 40 bundle com.example.browser frontmost
        window 5 "Start" at 0,30 size 300x200
        window 20 "Private" at 600,0 size 90x90
            AXTextArea "Own" at 610,10 size 60x60
    app Notes pid 41 bundle com.example.notes
        menu File > Save cmd s press: append "saved" to Body
        window 7 "Inbox" at 50,40 size 200x150
            AXButton "Send" at 60,50 size 60x20 press: append "sent" to Body
            AXTextArea "Body" at 60,80 size 150x30 value "hello" focused
            AXSlider "Size" at 200,50 size 20x20 value 6 range 0..24
            AXRow "Ada" at 60,135 size 100x20
                AXButton at 70,135 size 20x20
                    AXStaticText value "Call"
            AXWebArea "Talk" at 170,160 size 50x20
                AXButton "Reply" at 170,160 size 40x20
        window 8 at 60,110 size 100x60 sheet of 7
            AXStaticText value "Sure?"
            AXButton "Yes" at 70,130 size 40x20 press: append "y" to Body
        window 21 "Private" at 600,100 size 90x90
            AXTextArea "Own" at 610,110 size 60x60
    app Mail pid 42 bundle com.example.mail
        menu Edit > Paste cmd v
        window 9 "Draft" at 20,20 size 150x150
            AXTextArea "Letter" at 20,30 size 150x100 takes files focused
        window 22 "Private" at 600,200 size 90x90
            AXTextArea "Own" at 610,210 size 60x60
    app Chat pid 43 bundle com.example.chat chromium
        window 12 "Chat" at 200,20 size 150x150
            AXTextArea "Message" at 210,30 size 40x20 focused takes files
        window 23 "Private" at 600,300 size 90x90
            AXTextArea "Own" at 610,310 size 60x60
    app Hidden pid 44 bundle com.example.hidden hidden
        window 13 "One" at 60,60 size 100x60 minimized
        window 24 "Private" at 600,400 size 90x90
            AXTextArea "Own" at 610,410 size 60x60
)";

const TemporaryFolder& pictures() {
  static const TemporaryFolder folder;
  return folder;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const CommandRun& run) { return out << run.name; }

std::vector<CommandRun> everyCommand() {
  return {
      {"click", {"bg-click", "Notes", "70", "170"}},
      {"double_click", {"bg-click", "Chat", "220", "40", "left", "2"}},
      {"right_click", {"bg-click", "Notes", "70", "170", "right"}},
      {"scroll", {"bg-scroll", "Notes", "70", "170", "0", "3"}},
      {"move", {"bg-move", "Chat", "220", "40"}},
      {"drag", {"bg-drag", "Notes", "70", "90", "80", "95"}},
      {"hold", {"bg-focus-hold", "Notes"}},
      {"capture", {"capture", "Notes", pictures().path("picture.png")}},
      {"capture_probe", {"capture-probe"}},
      {"focus_release", {"focus-release", "41", "7"}},
      {"key", {"bg-key", "Mail", "ctrl+shift+a"}},
      {"chord", {"bg-key", "Chat", "cmd+shift+alt+ctrl+x"}},
      {"chord_in_front", {"bg-key", "Browser", "cmd+shift+alt+ctrl+x"}},
      {"shortcut", {"bg-key", "Notes", "cmd+s"}},
      {"text", {"bg-type", "Mail", "one, two and three and four\nfive"}},
      {"text_in_front", {"bg-type", "Browser", "one\ntwo"}},
      {"text_in_chromium", {"bg-type", "Chat", "a"}},
      {"paste", {"bg-paste-files", "Mail", "/a.txt"}},
      {"paste_by_keys", {"bg-paste-files", "Chat", "/a.txt"}},
      {"permissions", {"permissions"}},
      {"scene", {"scene"}},
      {"lock_now", {"lock-now"}},
      {"lock_serve", {"lock-serve"}},
      {"lock_arm", {"lock-arm"}},
      {"lock_disarm", {"lock-disarm"}},
      {"lock_status", {"lock-status"}},
      {"lock_query", {"lock-query"}},
      {"lock_unlock", {"lock-unlock"}},
      {"session", {"session"}},
      {"windows", {"windows", "Notes"}},
      {"find_text", {"ax-find-text", "Notes", "hello", "Send"}},
      {"texts_at", {"ax-texts-at", "Notes", "70", "90"}},
      {"press_child", {"ax-press-child", "Notes", "Ada", "call"}},
      {"at", {"ax-at", "Notes", "70", "55"}},
      {"press", {"ax-press", "Notes", "70", "55"}},
      {"press_in_document", {"ax-press-in-document", "Notes", "Talk", "Reply"}},
      {"press_exact", {"ax-press-exact", "Notes", "send", "last"}},
      {"match", {"ax-match", "Notes", "body", "70", "90"}},
      {"press_match", {"ax-press-match", "Notes", "sen", "70", "55"}},
      {"popup_items", {"ax-popup-items", "Notes"}},
      {"slider", {"ax-slider", "Notes", "Size", "increment"}},
      {"slider_number", {"ax-slider", "Notes", "Size", "7"}},
      {"insert", {"ax-insert", "Notes", "Body", "70", "90", "end", "Hi"}},
      {"replace", {"ax-insert", "Notes", "Body", "70", "90", "replace", "Hi", "[\"hello\"]"}},
      {"focus", {"ax-focus", "Notes", "Body", "70", "90"}},
      {"reveal", {"reveal", "Hidden"}},
      {"menu", {"ax-menu", "Notes", "file", "save"}},
      {"menubar", {"ax-menubar", "Notes"}},
      {"list", {"ax-list", "Notes"}},
      {"dump", {"ax-dump", "Notes"}},
      {"modal", {"ax-modal", "Notes"}},
      {"modal_press", {"ax-modal-press", "Notes", "Sure?", "Yes"}},
      {"focused", {"ax-focused", "Notes"}},
      {"set_value", {"ax-set-value", "Notes", "70", "90", "Hi"}},
  };
}

const simulator::World& deskOfEveryCommand() {
  static const simulator::World parsed = simulator::parseWorld(everyDesk);
  return parsed;
}

const simulator::Application& targetOf(const CommandRun& run) {
  const auto& applications = deskOfEveryCommand().applications;
  const std::string name = run.arguments.size() > 1 ? run.arguments[1] : "";
  const auto named = [&](const std::string& wanted) {
    return std::find_if(applications.begin(), applications.end(),
                        [&](const auto& each) { return each.name == wanted; });
  };
  const auto found = named(name);
  return found != applications.end() ? *found : *named("Notes");
}

Result runOn(TestMac& mac, const CommandRun& run) {
  return mac.driverWith(run.arguments, {{"CU_CAPTURE_PID", "900"}});
}

}  // namespace testing_support
