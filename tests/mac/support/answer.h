#pragma once

#include <cstdio>
#include <string>

/// What the probes have in common: the line that each prints, one for the assumption that it was
/// asked about.
namespace probe {

/// A text as JSON. Bytes that are no ASCII stay as they are.
inline std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char each : text) {
    if (each == '"' || each == '\\') result += '\\';
    if (static_cast<unsigned char>(each) < 0x20) {
      char escaped[8];
      std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned>(each));
      result += escaped;
    } else {
      result += each;
    }
  }
  return result + '"';
}

/// The values seen, in the order in which they were added.
class Evidence {
 public:
  Evidence& add(const std::string& name, const std::string& text) {
    return addJson(name, quoted(text));
  }
  Evidence& add(const std::string& name, const char* text) { return add(name, std::string(text)); }
  Evidence& add(const std::string& name, bool value) {
    return addJson(name, value ? "true" : "false");
  }
  Evidence& add(const std::string& name, long long value) {
    return addJson(name, std::to_string(value));
  }
  Evidence& add(const std::string& name, int value) {
    return add(name, static_cast<long long>(value));
  }

  /// Adds a value that is JSON already.
  Evidence& addJson(const std::string& name, const std::string& json) {
    if (!members_.empty()) members_ += ", ";
    members_ += quoted(name) + ": " + json;
    return *this;
  }

  std::string json() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

enum class Verdict { confirmed, refuted, notShown };

inline const char* name(Verdict verdict) {
  switch (verdict) {
    case Verdict::confirmed:
      return "confirmed";
    case Verdict::refuted:
      return "refuted";
    case Verdict::notShown:
      break;
  }
  return "not shown";
}

/// Refuted unless it holds.
inline Verdict verdictOf(bool holds) { return holds ? Verdict::confirmed : Verdict::refuted; }

/// Prints the answer. The status with which the probe ends.
inline int answer(const std::string& assumption, Verdict verdict, const Evidence& evidence) {
  std::printf("{\"assumption\": %s, \"verdict\": \"%s\", \"evidence\": %s}\n",
              quoted(assumption).c_str(), name(verdict), evidence.json().c_str());
  std::fflush(stdout);
  return 0;
}

/// The answer when what is needed is missing.
inline int notShown(const std::string& assumption, const std::string& why) {
  return answer(assumption, Verdict::notShown, Evidence().add("why", why));
}

/// The assumption that the probe was asked about.
inline std::string asked(int count, char** words) { return count > 1 ? words[1] : ""; }

}  // namespace probe
