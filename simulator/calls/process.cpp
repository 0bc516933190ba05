#include <algorithm>
#include <sstream>

#include "simulator/calls/calls.h"

namespace simulator::calls {

using driver::pack;

namespace {

/// The numbers under which libraries are open. SkyLight's handle does not reach CoreGraphics, which
/// exports the window location's setter: that one is found among the loaded libraries.
struct Library {
  std::string_view path;
  std::string_view name;
  std::vector<std::string_view> symbols;
};

const std::vector<Library>& libraries() {
  static const std::vector<Library> known = {
      {"/System/Library/PrivateFrameworks/SkyLight.framework/SkyLight",
       "SkyLight",
       {"SLEventPostToPid", "SLEventSetIntegerValueField", "SLPSPostEventRecordTo"}},
      {"/System/Library/Frameworks/ApplicationServices.framework/ApplicationServices",
       "ApplicationServices",
       {"GetProcessForPID", "GetFrontProcess", "GetProcessPID", "_AXUIElementGetWindow"}},
      {"/System/Library/PrivateFrameworks/login.framework/Versions/Current/login",
       "login",
       {"SACLockScreenImmediate"}},
  };
  return known;
}

bool missing(const Mac& mac, std::string_view name) {
  return mac.world.missing.count(std::string(name)) != 0;
}

bool alive(const Mac& mac, Pid pid) {
  return mac.world.processes.count(pid) != 0 || findApplication(mac.world, pid) != nullptr;
}

}  // namespace

Answer environment(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  std::optional<std::string> value;
  const auto found = client.environment.find(arguments.text(0));
  if (found != client.environment.end()) value = found->second;
  return {pack(value), 0};
}

Answer nullSignal(Mac& mac, Client& client, const Arguments& arguments) {
  const auto pid = arguments.get<Pid>(0);
  // 0 and below name groups, and the caller is always in one that it may signal.
  return {pack(pid <= 0 ? pid >= -1 : pid == client.pid || alive(mac, pid)), 0};
}

Answer exit(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  client.exited = true;
  client.status = arguments.get<int>(0);
  return {};
}

Answer fullUserName(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.user.fullName), 0};
}

Answer loginName(Mac& mac, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(mac.world.user.loginName), 0};
}

// The platform's parser knows titles; the first word that is none is the given name.
Answer givenName(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  std::optional<std::string> name;
  std::istringstream words(arguments.text(0));
  for (std::string word; mac.world.user.nameParses && !name && words >> word;) {
    const bool title = word == "Dr." || word == "Mr." || word == "Mrs." || word == "Ms.";
    if (!title) name = word;
  }
  return {pack(name), 0};
}

Answer handleSignal(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  client.handledSignals.insert(arguments.get<int>(0));
  return {};
}

/// A signal that came from outside the Mac.
Answer noteSignal(Mac& mac, Client& client, const Arguments& arguments) {
  const int number = arguments.get<int>(0);
  if (client.handledSignals.count(number) == 0) {
    client.told = ToldToEnd{number, mac.now, true};
    return {};
  }
  client.items.push_back(
      {platform::ItemKind::signal, arguments.get<std::int64_t>(0), 0, tap::Event{}});
  return {};
}

Answer dieBySignal(Mac& /*mac*/, Client& client, const Arguments& arguments) {
  client.exited = true;
  client.diedBySignal = arguments.get<int>(0);
  return {};
}

// The file is a real one: the simulated Mac only says whether the lock may be had.
Answer lockFile(Mac& /*mac*/, Client& /*client*/, const Arguments& /*arguments*/) {
  return {pack(true), 0};
}

Answer replaceFile(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  enter(mac, {.kind = JournalEntry::Kind::file, .what = arguments.text(0)});
  return {pack(true), 0};
}

Answer listDirectory(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const std::string prefix = arguments.text(0) + "/";
  std::vector<std::string> names;
  for (auto file = mac.world.files.lower_bound(prefix);
       file != mac.world.files.end() && file->compare(0, prefix.size(), prefix) == 0; ++file) {
    std::string name = file->substr(prefix.size(), file->find('/', prefix.size()) - prefix.size());
    if (names.empty() || names.back() != name) names.push_back(std::move(name));
  }
  std::optional<std::vector<std::string>> listing;
  if (!names.empty()) listing = std::move(names);
  return {pack(listing), 0};
}

Answer fileExists(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const std::string path = arguments.text(0);
  const auto found = mac.world.files.lower_bound(path);
  const bool exists = found != mac.world.files.end() &&
                      (*found == path || found->compare(0, path.size() + 1, path + "/") == 0);
  return {pack(exists), 0};
}

Answer openLibrary(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const std::string path = arguments.text(0);
  const auto& known = libraries();
  const auto library = std::find_if(known.begin(), known.end(),
                                    [&](const Library& each) { return each.path == path; });
  if (library == known.end() || missing(mac, library->name)) return {};
  return {pack(library - known.begin() + 1), 0};
}

Answer findSymbol(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const auto& known = libraries();
  const auto number = arguments.get<std::size_t>(0);
  const std::string name = arguments.text(1);
  if (number < 1 || number > known.size()) throw driver::MalformedDatum();
  const auto& symbols = known[number - 1].symbols;
  const bool exported = std::find(symbols.begin(), symbols.end(), name) != symbols.end();
  return {pack(exported && !missing(mac, name)), 0};
}

Answer findLoadedSymbol(Mac& mac, Client& /*client*/, const Arguments& arguments) {
  const std::string name = arguments.text(0);
  return {pack(name == "CGEventSetWindowLocation" && !missing(mac, name)), 0};
}

}  // namespace simulator::calls
