#include "simulator/input/records.h"

#include "simulator/input/key_window.h"

namespace simulator {

namespace {

// Offsets in an event record. Apple documents none of it: this is the one form that is known to
// work, and what any other byte would do is not known. So nothing else has an effect here.
constexpr std::size_t lengthOffset = 0x04;
constexpr std::size_t typeOffset = 0x08;
constexpr std::size_t locationOffset = 0x20;
constexpr std::size_t locationLength = 16;
constexpr std::size_t keyOffset = 0x3A;
constexpr std::size_t windowOffset = 0x3C;
constexpr std::size_t focusOffset = 0x8A;
constexpr std::size_t recordLength = 248;
constexpr std::uint8_t focusType = 0x0D;

std::string focusRecord(WindowNumber window, bool give) {
  std::string record(recordLength, '\0');
  record[lengthOffset] = static_cast<char>(recordLength);
  record[typeOffset] = focusType;
  for (std::size_t i = 0; i < 4; ++i) {
    record[windowOffset + i] = static_cast<char>(window >> (8 * i));
  }
  record[focusOffset] = give ? 1 : 2;
  return record;
}

std::string keyRecord(WindowNumber window, char type) {
  std::string record = focusRecord(window, true);
  record[typeOffset] = type;
  record.replace(locationOffset, locationLength, locationLength, '\xFF');
  record[keyOffset] = 0x10;
  record[focusOffset] = 0;
  return record;
}

std::string firstDifference(const std::string& record, const std::string& expected) {
  if (record.size() != expected.size()) return "malformed record: wrong length";
  for (std::size_t i = 0; i < record.size(); ++i) {
    if (record[i] != expected[i]) return "malformed record: byte " + std::to_string(i);
  }
  return "";
}

void changeFocus(Application& application, WindowNumber window, bool give, Pid giver) {
  if (give) {
    application.focusByRecord = window;
    application.focusGivenBy = giver;
  } else if (application.focusByRecord == window) {
    application.focusByRecord = 0;
    application.madeKey = 0;  // a window is key by records only as long as focus is held by them
  }
}

/// The two records of a pair make a window the focused one. Says why a record has no effect; empty
/// when it has one.
std::string takeKeyRecord(World& world, Application& application, WindowNumber window,
                          bool second) {
  if (!second) {
    application.keyByRecord = window;
    return "";
  }
  if (application.keyByRecord != window) return "a second record without its first";
  application.keyByRecord = 0;
  makeKeyWindow(world, application, window);
  application.madeKey = keyWindowOf(application);
  return "";
}

}  // namespace

RecordKind recordKind(const std::string& record) {
  if (record.size() <= focusOffset) return RecordKind::other;
  switch (record[typeOffset]) {
    case 1:
      return RecordKind::firstOfKeyPair;
    case 2:
      return RecordKind::secondOfKeyPair;
    case focusType:
      return record[focusOffset] == 2 ? RecordKind::takesFocus : RecordKind::givesFocus;
    default:
      return RecordKind::other;
  }
}

WindowNumber recordWindow(const std::string& record) {
  WindowNumber window = 0;
  if (record.size() < recordLength) return window;
  for (std::size_t i = 0; i < 4; ++i) {
    window |= static_cast<WindowNumber>(static_cast<std::uint8_t>(record[windowOffset + i]))
              << (8 * i);
  }
  return window;
}

void takeRecord(Mac& mac, Pid pid, const std::string& record) {
  const std::uint8_t type =
      record.size() > typeOffset ? static_cast<std::uint8_t>(record[typeOffset]) : 0;
  const WindowNumber window = recordWindow(record);
  const bool focus = type == focusType;
  const bool give = record.size() > focusOffset && record[focusOffset] == 1;
  const bool second = type == 2;
  std::string fault = firstDifference(
      record, focus ? focusRecord(window, give) : keyRecord(window, second ? 2 : 1));
  Application* application = findApplication(mac.world, pid);
  const Window* target = findWindow(mac.world, window);
  if (application == nullptr || target == nullptr || target->owner != pid) {
    if (fault.empty()) fault = "no such window of the application";
  } else if (fault.empty() && focus) {
    changeFocus(*application, window, give, mac.world.actor);
  } else if (fault.empty()) {
    fault = takeKeyRecord(mac.world, *application, window, second);
  }
  const std::string what = focus ? (give ? "give" : "take") : (second ? "second" : "first");
  enter(mac, {.kind = focus ? JournalEntry::Kind::focus : JournalEntry::Kind::key,
              .target = pid,
              .window = window,
              .what = what,
              .landed = fault.empty(),
              .outcome = fault,
              .record = record});
}

}  // namespace simulator
