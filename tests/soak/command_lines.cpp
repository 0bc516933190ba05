#include "tests/soak/command_lines.h"

#include <algorithm>
#include <array>

#include "tests/soak/mac.h"
#include "tests/soak/texts.h"

namespace soak {

namespace {

/// A command with the kinds of its arguments; what may be missing stands behind a question mark.
struct Form {
  std::string_view name;
  std::string_view arguments;
  bool Features::*feature;
};

constexpr std::array forms = {
    Form{"bg-click", "application point ? button count", &Features::pointer},
    Form{"bg-scroll", "application point lines lines", &Features::pointer},
    Form{"bg-move", "application point", &Features::pointer},
    Form{"bg-drag", "application point point", &Features::pointer},
    Form{"bg-focus-hold", "application", &Features::pointer},
    Form{"focus-release", "pid window", &Features::pointer},
    Form{"capture", "application file", &Features::pictures},
    Form{"capture-probe", "", &Features::pictures},
    Form{"bg-key", "application combination", &Features::keyboard},
    Form{"bg-type", "application prose", &Features::keyboard},
    Form{"bg-paste-files", "application path ? path", &Features::keyboard},
    Form{"permissions", "", nullptr},
    Form{"scene", "", nullptr},
    Form{"session", "", nullptr},
    Form{"windows", "application", nullptr},
    Form{"lock-now", "", &Features::session},
    Form{"lock-serve", "", &Features::session},
    Form{"lock-arm", "", &Features::session},
    Form{"lock-disarm", "", &Features::session},
    Form{"lock-status", "", &Features::session},
    Form{"lock-query", "", &Features::session},
    Form{"lock-unlock", "", &Features::session},
    Form{"ax-find-text", "application label ? label", &Features::accessibility},
    Form{"ax-texts-at", "application point", &Features::accessibility},
    Form{"ax-press-child", "application row child ? role", &Features::accessibility},
    Form{"ax-at", "application point", &Features::accessibility},
    Form{"ax-press", "application point", &Features::accessibility},
    Form{"ax-press-in-document", "application document label", &Features::accessibility},
    Form{"ax-press-exact", "application label ? which ? group", &Features::accessibility},
    Form{"ax-match", "application label near", &Features::accessibility},
    Form{"ax-press-match", "application label near", &Features::accessibility},
    Form{"ax-popup-items", "application", &Features::accessibility},
    Form{"ax-slider", "application slider ? sliding", &Features::accessibility},
    Form{"ax-insert", "application field near mode text ? owned", &Features::accessibility},
    Form{"ax-insert", "application field near mode text ? owned", &Features::accessibility},
    Form{"ax-focus", "application field near", &Features::accessibility},
    Form{"reveal", "application", &Features::accessibility},
    Form{"ax-menu", "application menu", &Features::accessibility},
    Form{"ax-menubar", "application", &Features::accessibility},
    Form{"ax-list", "application", &Features::accessibility},
    Form{"ax-dump", "application", &Features::accessibility},
    Form{"ax-modal", "application", &Features::accessibility},
    Form{"ax-modal-press", "application text named-button", &Features::accessibility},
    Form{"ax-focused", "application", &Features::accessibility},
    Form{"ax-set-value", "application point text", &Features::accessibility},
};

constexpr std::array<std::string_view, 5> sharedNames = {"capture", "bg-click", "bg-scroll",
                                                         "bg-move", "bg-focus-hold"};

CommandLine wordsOf(Random& random, const Form& form, const MacSketch& mac,
                    const ApplicationSketch& application) {
  CommandLine words = {std::string(form.name)};
  std::string_view rest = form.arguments;
  while (!rest.empty()) {
    const std::string_view kind = rest.substr(0, rest.find(' '));
    rest.remove_prefix(std::min(kind.size() + 1, rest.size()));
    if (kind != "?") {
      addArgument(random, kind, mac, application, words);
    } else if (random.oneIn(2)) {
      break;
    }
  }
  return words;
}

/// Makes the words such that they may make no sense any more.
void disturb(Random& random, const Features& features, CommandLine& words) {
  const std::size_t place = random.below(words.size());
  switch (random.below(7)) {
    case 0:
      words.resize(place);
      break;
    case 1:
      words[place] = oddNumber(random);
      break;
    case 2:
      words[place] = oddText(random);
      break;
    case 3:
      words.push_back(prose(random, features));
      break;
    case 4:
      std::swap(words[place], words.back());
      break;
    case 5:
      words.front() += "s";  // no command
      break;
    default:
      words[place] += "x";
      break;
  }
}

/// Null for a command that lives on.
const Form* formOf(std::string_view name) {
  const auto found =
      std::find_if(forms.begin(), forms.end(), [&](const Form& each) { return each.name == name; });
  return found == forms.end() ? nullptr : &*found;
}

const Form& someForm(Random& random, const MacSketch& mac) {
  const Form* const aimed = mac.aim == nullptr ? nullptr : formOf(mac.aim->command);
  if (aimed != nullptr && !random.oneIn(3)) return *aimed;
  const Features& features = mac.features;
  for (std::size_t attempt = 0; attempt < 40; ++attempt) {
    const Form& form = random.pick(forms);
    if (form.feature == nullptr ? random.oneIn(6) : features.*form.feature) return form;
  }
  return random.pick(forms);
}

}  // namespace

Step someRun(Random& random, const MacSketch& mac) {
  const ApplicationSketch& application = random.pick(mac.applications);
  Step step;
  const Form& form = someForm(random, mac);
  step.words = wordsOf(random, form, mac, application);
  if (mac.features.oddArguments && random.oneIn(3)) {
    disturb(random, mac.features, step.words);
  }
  step.environment = someEnvironment(random, mac);
  return step;
}

CommandLine someSharedCommand(Random& random, const MacSketch& mac,
                              const ApplicationSketch& application) {
  const std::string_view name = random.pick(sharedNames);
  return wordsOf(random, *formOf(name), mac, application);
}

std::map<std::string, std::string> someEnvironment(Random& random, const MacSketch& mac) {
  std::map<std::string, std::string> environment;
  if (mac.features.scope && !random.oneIn(3)) {
    const ApplicationSketch& application = random.pick(mac.applications);
    const bool isKnown = !application.windows.empty() && !random.oneIn(4);
    environment["CU_WINDOW"] =
        isKnown ? random.pick(application.windows).title : title(random, mac.features);
  }
  if (mac.features.service) {
    environment["CU_CAPTURE_PID"] =
        random.oneIn(12) ? oddNumber(random) : std::to_string(servicePid);
  }
  if (mac.features.pointer && random.oneIn(10)) {
    environment["CU_FOCUS_PID"] = std::to_string(random.pick(mac.applications).pid);
  }
  return environment;
}

std::vector<std::string_view> namesOfRuns() {
  std::vector<std::string_view> names;
  for (const Form& form : forms) names.push_back(form.name);
  return names;
}

}  // namespace soak
