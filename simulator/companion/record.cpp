#include "simulator/companion/record.h"

#include <fcntl.h>

#include <cerrno>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <utility>

#include "platform/posix/descriptors.h"
#include "simulator/companion/about.h"
#include "simulator/companion/failure.h"
#include "simulator/companion/files.h"
#include "simulator/companion/looks.h"
#include "simulator/companion/record_format.h"
#include "simulator/drawing/picture_codec.h"
#include "simulator/mac/json_text.h"
#include "simulator/rules/left_behind.h"
#include "simulator/snapshot/snapshot.h"
#include "simulator/snapshot/world_text.h"

namespace companion {

namespace {

using nlohmann::json;
using simulator::Desktop;
using simulator::JournalEntry;
using simulator::Picture;
using Kind = JournalEntry::Kind;

/// Whether the screens are looked at when such an entry is kept: before a run and after it, with
/// each reply, when anything happened by itself, and when a test has failed or waited in vain.
bool isOccasion(Kind kind) {
  return kind == Kind::process || kind == Kind::reply || kind == Kind::happening ||
         kind == Kind::wait || kind == Kind::failure;
}

/// What is told of a Mac before anything has happened in it.
json header(const simulator::World& world, simulator::Scheduler::Time time) {
  json applications = json::array();
  for (const simulator::Application& each : world.applications) {
    applications.push_back(
        {{"name", simulator::textJson(each.name.value_or(""))}, {"pid", each.pid}});
  }
  json line{{"applications", applications},
            {"kind", "record"},
            {"program", versionText()},
            {"time", timeName(time)},
            {"version", record_format::version}};
  if (world.seed) line["seed"] = *world.seed;
  return line;
}

}  // namespace

Recorder::Recorder(const RecordOptions& options, const std::string& world,
                   simulator::Scheduler::Time time)
    : folder_(options.folder), takesPictures_(options.pictures), time_(time) {
  std::error_code error;
  std::filesystem::create_directories(folder_ + "/" + record_format::picturesFolder, error);
  if (error) throw Failure("cannot make " + folder_ + ": " + error.message());
  const std::string path = folder_ + "/" + record_format::linesFile;
  file_ = Descriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_APPEND | O_CLOEXEC, 0666));
  if (file_.number() < 0 && errno == EEXIST)
    throw Failure(folder_ + " has a record already; remove it, or name another folder");
  if (file_.number() < 0) throw systemFailure("cannot write " + path);
  writeFile(folder_ + "/" + record_format::worldFile, world);
}

void Recorder::update(const Desktop& desktop) {
  if (desktop.mac().entries == kept_ && begun_) return;
  write(newLines(desktop));
}

void Recorder::finish(const Desktop& desktop) {
  json violations = desktop.violations();
  for (const std::string& left : simulator::leftBehind(desktop.mac())) violations.push_back(left);
  const json end{{"at", static_cast<double>(desktop.mac().now) / 1000},
                 {"kind", "end"},
                 {"violations", violations}};
  write(newLines(desktop) + simulator::jsonLine(end) + "\n");
  try {
    writeFile(folder_ + "/" + record_format::endFile, simulator::snapshotText(desktop));
  } catch (const simulator::UnwritableWorld&) {
    return;  // the record is whole without it
  }
}

std::string Recorder::newLines(const Desktop& desktop) {
  const simulator::Mac& mac = desktop.mac();
  std::string lines;
  if (!std::exchange(begun_, true)) {
    lines += simulator::jsonLine(header(mac.world, time_)) + "\n" + pictureLine(mac, 0);
  }
  bool looks = false;
  const auto& journal = mac.journal;
  for (auto entry = simulator::entriesAfter(mac, kept_); entry != journal.end(); ++entry) {
    lines += simulator::journalLine(*entry) + "\n";
    looks = looks || isOccasion(entry->kind);
  }
  kept_ = mac.entries;
  return looks ? lines + pictureLine(mac, kept_) : lines;
}

/// A line that tells of a picture of the screens as they are now; empty when they look as before.
std::string Recorder::pictureLine(const simulator::Mac& mac, std::int64_t after) {
  if (!takesPictures_ || mac.world.displays.empty()) return "";
  const Picture picture = plainScreens(mac.world);
  const std::string name = lookOf(picture);
  if (name == latest_) return "";
  latest_ = name;
  const std::string file = record_format::picturesFolder + ("/" + name);
  // What is drawn is kept, and drawn when somebody wants to see it: a run is not to wait for that.
  if (pictures_.insert(name).second) {
    writeFile(folder_ + "/" + file, simulator::encodedPicture(picture));
  }
  return simulator::jsonLine({{"after", after},
                              {"at", static_cast<double>(mac.now) / 1000},
                              {"file", file},
                              {"height", picture.source.height},
                              {"kind", "picture"},
                              {"width", picture.source.width},
                              {"x", picture.source.x},
                              {"y", picture.source.y}}) +
         "\n";
}

void Recorder::write(const std::string& lines) {
  if (!posix::writeAll(file_.number(), lines)) throw systemFailure("cannot write the record");
}

}  // namespace companion
