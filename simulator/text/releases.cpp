#include "simulator/text/releases.h"

#include <algorithm>
#include <tuple>

namespace simulator {

namespace {

constexpr std::array rows = {
    ReleaseSetting{"recording-question never",
                   "the user is not asked again whether the screen may be recorded",
                   {true, false, false},
                   [](System& system) { system.asksForRecording = false; }},
    ReleaseSetting{"recording-question before-capture",
                   "the next screenshot or sharing brings up that question, which comes to front. "
                   "Until the user answers, both fail with -3801",
                   {false, true, true},
                   [](System& system) { system.asksForRecording = true; }},
    ReleaseSetting{"pasteboard-reads free",
                   "a process reads what others have copied",
                   {true, true, false},
                   [](System& system) { system.pasteboardReads = PasteboardReads::free; }},
    ReleaseSetting{"pasteboard-reads refused",
                   "it gets the items of others without their data",
                   {false, false, true},
                   [](System& system) { system.pasteboardReads = PasteboardReads::refused; }},
    ReleaseSetting{"pasteboard-reads hanging",
                   "its read does not come back",
                   {false, false, false},
                   [](System& system) { system.pasteboardReads = PasteboardReads::hanging; }},
    ReleaseSetting{"key-taps given",
                   "a process that has no windows gets taps that filter keys",
                   {true, true, true},
                   [](System& system) { system.givesKeyTaps = true; }},
    ReleaseSetting{"key-taps refused",
                   "it gets none",
                   {false, false, false},
                   [](System& system) { system.givesKeyTaps = false; }},
    ReleaseSetting{
        "closed-window goes-on",
        "a sharing whose window has closed goes on, and its process gets no notice",
        {true, false, false},
        [](System& system) { system.closedWindowSharing = ClosedWindowSharing::goesOn; }},
    ReleaseSetting{
        "closed-window inactive",
        "it goes on too, but without frames until it gets another window",
        {false, true, true},
        [](System& system) { system.closedWindowSharing = ClosedWindowSharing::inactive; }},
    ReleaseSetting{
        "closed-window stopped",
        "the system stops it, and its process gets the error -3815",
        {false, false, false},
        [](System& system) { system.closedWindowSharing = ClosedWindowSharing::stopped; }},
};

auto settingsOf(const System& system) {
  return std::tuple(system.asksForRecording, system.pasteboardReads, system.givesKeyTaps,
                    system.closedWindowSharing);
}

}  // namespace

std::span<const ReleaseSetting> releaseSettings() { return rows; }

bool isSet(const System& system, const ReleaseSetting& setting) {
  System set = system;
  setting.apply(set);
  return settingsOf(set) == settingsOf(system);
}

bool applyRelease(System& system, int number) {
  const auto release = std::find_if(releases.begin(), releases.end(),
                                    [&](const Release& each) { return each.number == number; });
  if (release == releases.end()) return false;
  const auto index = static_cast<std::size_t>(release - releases.begin());
  system.version = release->version;
  for (const ReleaseSetting& setting : rows) {
    if (setting.isSetBy[index]) setting.apply(system);
  }
  return true;
}

void readReleaseSetting(Words& words, World& world) {
  if (words.atEnd()) words.failNeeding("system", oneOf(eachFirstWord(phrasesOf(rows))).c_str());
  rows[takePhrase(words, phrasesOf(rows))].apply(world.system);
}

}  // namespace simulator
