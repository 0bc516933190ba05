#include "simulator/mac/mac.h"

#include <algorithm>
#include <utility>

#include "simulator/mac/datum_text.h"
#include "simulator/world/fields.h"

namespace simulator {

namespace {

/// What somebody who waits for the Mac to come to rest need not know: that runs come and go, what
/// they say, and what is said of their calls. A call that goes wrong each time would be news for
/// ever.
bool isNews(JournalEntry::Kind kind) { return kind < JournalEntry::Kind::process; }

}  // namespace

std::vector<std::string> shownArguments(const Client& client) {
  std::vector<std::string> arguments = client.arguments;
  if (!arguments.empty()) arguments[0].erase(0, arguments[0].rfind('/') + 1);
  return arguments;
}

std::vector<JournalEntry>::const_iterator entriesAfter(const Mac& mac, std::int64_t number) {
  const auto& journal = mac.journal;
  const auto count = static_cast<std::int64_t>(journal.size());
  return journal.end() - std::clamp<std::int64_t>(mac.entries - number, 0, count);
}

void passTimeTo(Mac& mac, Microseconds time) {
  for (SettledWrite& write : settleWrites(mac.world, time)) {
    mac.now = std::max(mac.now, write.at);
    enter(mac, {.kind = JournalEntry::Kind::landing,
                .pid = write.actor,
                .target = write.pid,
                .window = write.element ? write.element->window : 0,
                .what = write.attribute.empty() ? "paste" : std::move(write.attribute),
                .landed = write.landed,
                .outcome = std::move(write.outcome),
                .element = std::move(write.element),
                .text = std::move(write.text)});
  }
  mac.now = time;
}

void enter(Mac& mac, JournalEntry entry) {
  entry.number = ++mac.entries;
  entry.at = mac.now;
  if (entry.pid == 0) entry.pid = mac.world.actor;
  entry.text = beginningOf(entry.text, entryTextBytesMax);
  if (isNews(entry.kind)) mac.lastNews = mac.now;
  // Half at a time: to drop them one by one would move all others each time.
  if (mac.journal.size() == journalEntriesMax) {
    mac.journal.erase(mac.journal.begin(), mac.journal.begin() + journalEntriesMax / 2);
  }
  mac.journal.push_back(std::move(entry));
}

}  // namespace simulator
