#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define STANDINS_CHECKED_FOR_RACES
#endif
#endif

#ifdef STANDINS_CHECKED_FOR_RACES
extern "C" {
void AnnotateIgnoreSyncBegin(const char* file, int line);
void AnnotateIgnoreSyncEnd(const char* file, int line);
void AnnotateIgnoreReadsBegin(const char* file, int line);
void AnnotateIgnoreReadsEnd(const char* file, int line);
void AnnotateIgnoreWritesBegin(const char* file, int line);
void AnnotateIgnoreWritesEnd(const char* file, int line);
}
#endif

namespace standins {

/// While one is there, the race detector takes no notice of this thread: neither of what it reads
/// and writes, nor of what its locks would put in order. For what only stand-ins do.
class Unobserved {
 public:
  Unobserved(const Unobserved&) = delete;
  Unobserved& operator=(const Unobserved&) = delete;
#ifdef STANDINS_CHECKED_FOR_RACES
  Unobserved() {
    AnnotateIgnoreSyncBegin(__FILE__, __LINE__);
    AnnotateIgnoreReadsBegin(__FILE__, __LINE__);
    AnnotateIgnoreWritesBegin(__FILE__, __LINE__);
  }
  ~Unobserved() {
    AnnotateIgnoreWritesEnd(__FILE__, __LINE__);
    AnnotateIgnoreReadsEnd(__FILE__, __LINE__);
    AnnotateIgnoreSyncEnd(__FILE__, __LINE__);
  }
#else
  Unobserved() {}
  ~Unobserved() {}
#endif
};

}  // namespace standins
