#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <atomic>
#include <string>
#include <vector>

/// Stand-ins for Apple's frameworks, in which the adapters run without a Mac. They count the
/// references to every object exactly, and record the calls that a test may want to compare.
/// Functions may be called on any thread, but for those that open or close a test.
namespace standins {

enum class Type : CFTypeID {
  array = 1,
  attributedString,
  block,
  boolean,
  boxedValue,
  colour,
  data,
  dictionary,
  displayMode,
  element,
  event,
  eventSource,
  image,
  imageDestination,
  imageSource,
  instance,
  machPort,
  null,
  number,
  provider,
  runLoopSource,
  string,
};

/// How many references there are to an object. Counting puts threads in order as little as the Mac
/// does: what others did before they released theirs is over for who releases the last one, and for
/// nobody else. So the race detector sees what is read by one thread and written by another, though
/// both count.
class References {
 public:
  long count() const { return count_.load(std::memory_order_relaxed); }
  void set(long count) { count_.store(count, std::memory_order_relaxed); }
  void add() { count_.fetch_add(1, std::memory_order_relaxed); }

  /// Whether there was one to add to.
  bool addUnlessGone() {
    long count = this->count();
    while (count > 0) {
      if (count_.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
    }
    return false;
  }

  /// Whether that was the last one.
  bool drop() {
    if (count_.fetch_sub(1, std::memory_order_release) != 1) return false;
    (void)count_.load(std::memory_order_acquire);
    return true;
  }

 private:
  std::atomic<long> count_ = 1;
};

/// An object as the adapters see it. It begins with one reference, and its memory outlives its last
/// one, so that a later use can be told.
class Object {
 public:
  explicit Object(Type type) : type(type) {}
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;
  virtual ~Object() = default;

  /// The content, as tests compare it.
  virtual std::string describe() const = 0;

  /// Called when its last reference has gone, before those that it owns are released.
  virtual void end() {}

  const Type type;
  References references;
  /// The references that this object owns.
  std::vector<CFTypeRef> owned;
};

/// Enters a new object into the books, which own its memory. The caller has its one reference.
template <class Kind>
Kind* entered(Kind* object);
void enter(Object* object);

/// The object behind a reference; noted as a mistake when its last reference has gone.
Object* checked(CFTypeRef reference);

/// The object as what it is known to be.
template <class Kind>
Kind* as(CFTypeRef reference) {
  return dynamic_cast<Kind*>(checked(reference));
}

/// Any object's content; "null" for a null reference.
std::string describe(CFTypeRef reference);

/// Notes a misuse of an interface.
void noteMistake(std::string mistake);

/// Records a call.
void record(std::string call);

/// The calls recorded since this was last asked.
std::vector<std::string> takeCalls();

/// Takes a reference over until the books are closed.
template <class Reference>
Reference kept(Reference reference);
void keep(CFTypeRef reference);

/// Takes an object out of the books: it is there until the process ends.
void keepForEver(CFTypeRef reference);

/// Closes the books: what was kept is released, and all that is then wrong is told. Every object is
/// gone afterwards. No other thread may use one any more.
std::vector<std::string> closeBooks();

template <class Kind>
Kind* entered(Kind* object) {
  enter(object);
  return object;
}

template <class Reference>
Reference kept(Reference reference) {
  keep(reference);
  return reference;
}

}  // namespace standins
