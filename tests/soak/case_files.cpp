#include "tests/soak/case_files.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace soak {

namespace {

/// A word as bash reads it, whatever is in it.
std::string shellWord(std::string_view text) {
  std::string result = "$'";
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte >= 0x7F || c == '\'' || c == '\\') {
      result += escaped(c);
    } else {
      result += c;
    }
  }
  return result + "'";
}

/// The same with what the folder is called there.
std::string scriptWord(const std::string& text) {
  return replaced(shellWord(text), folderName, "'\"$folder\"$'");
}

/// "advance" takes whole words such as "15us".
std::string advancing(Microseconds time) {
  return "simulated-mac advance " + std::to_string(time) + "us > /dev/null\n";
}

/// What is done to the process "$run" from outside, in the order of the times. Its input is
/// descriptor 3.
std::string deliveryText(const Delivery& delivery, Microseconds since) {
  std::string text = delivery.at > since ? "  " + advancing(delivery.at - since) : "";
  switch (delivery.kind) {
    case Delivery::Kind::input:
      return text + "  printf %s " + scriptWord(delivery.text) + " >&3\n";
    case Delivery::Kind::endOfInput:
      return text + "  exec 3>&-\n";
    case Delivery::Kind::signal:
      return text + "  kill -" + std::to_string(delivery.signal) + " $run\n";
  }
  return text;
}

std::string commandText(const Step& step) {
  std::string text = "env";
  for (const auto& [name, value] : step.environment) {
    text += " " + name + "=" + replaced(scriptWord(value), serviceName, "'\"$service\"$'");
  }
  text += " driver";
  for (const std::string& word : step.words) text += " " + scriptWord(word);
  return text;
}

/// A step whose process gets something from outside: that comes from a flow of the shell's own.
std::string attendedText(const Step& step, std::size_t number) {
  const std::string input = "\"$folder/input-" + std::to_string(number) + "\"";
  std::string text = "mkfifo " + input + "\n" + commandText(step) + " < " + input +
                     " &\nrun=$! service=$!\n(\n  exec 3> " + input + "\n";
  Microseconds since = 0;
  for (const Delivery& delivery : step.deliveries) {
    text += deliveryText(delivery, since);
    since = delivery.at;
  }
  return text + ") &\n" + (step.beside ? "" : "wait $run\n");
}

}  // namespace

std::string scriptText(const Case& one) {
  std::string text =
      "#!/usr/bin/env bash\n# simulated-mac run --virtual case.world -- bash THIS, with driver and "
      "simulated-mac in the path\nfolder=$(mktemp -d)\ncd \"$folder\"\nservice=0\n";
  for (const std::string& fault : one.faults) text += "simulated-mac fault " + fault + "\n";
  std::size_t number = 0;
  for (const Step& step : one.steps) {
    ++number;
    if (step.after > 0) text += advancing(step.after);
    if (step.deliveries.empty()) {
      text += commandText(step) + (step.beside ? " &\n" : "\n");
    } else {
      text += attendedText(step, number);
    }
  }
  return text + "wait\nsimulated-mac violations\n";
}

namespace {

void writeFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary);
  file << text;
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

std::string readFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace

void writeCase(const Case& one, const std::string& folder, const std::string& said) {
  std::filesystem::create_directories(folder);
  std::string comment = "# " + replaced(said, "\n", " ") + "\n";
  writeFile(folder + "/" + worldFile, worldText(one));
  writeFile(folder + "/" + stepsFile, comment + stepsText(one));
}

Case readCaseIn(const std::string& folder) {
  return readCase(readFile(folder + "/" + worldFile), readFile(folder + "/" + stepsFile));
}

}  // namespace soak
