// Loaded into the processes of an agent by `simulated-mac run --virtual --sleep`: whoever of them
// sleeps, or waits for descriptors with a time-out, waits for virtual time. The clocks of a process
// go on by what it has slept. It needs nothing but the C library, whatever it is loaded into.

#include <dlfcn.h>
#include <poll.h>
#include <sys/epoll.h>
#include <sys/select.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <threads.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

using Nanoseconds = std::int64_t;

constexpr Nanoseconds second = 1'000'000'000;
constexpr Nanoseconds millisecond = 1'000'000;
constexpr Nanoseconds microsecond = 1'000;

/// How far the clocks of this process are ahead.
std::atomic<Nanoseconds> ahead{0};

Nanoseconds nanosecondsOf(const timespec& time) { return time.tv_sec * second + time.tv_nsec; }

timespec timespecOf(Nanoseconds length) { return {length / second, length % second}; }

/// The C library's own function.
template <class Function>
Function* original(Function* /*ours*/, const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

#define ORIGINAL(name) (original(&(name), #name))

/// The tool and the Mac itself take their time from the Mac.
bool isOwn() {
  return std::strcmp(program_invocation_short_name, "driver") == 0 ||
         std::strcmp(program_invocation_short_name, "simulated-mac") == 0;
}

/// Closes it in the end, whatever `errno` says.
class Socket {
 public:
  explicit Socket(int number) : number_(number) {}
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;
  ~Socket() {
    const int error = errno;
    if (number_ >= 0) close(number_);
    errno = error;
  }

  int number() const { return number_; }

 private:
  int number_;
};

int connectToMac() {
  const char* name = std::getenv("SIMULATED_MAC");
  sockaddr_un address{};
  if (name == nullptr || *name == '\0' || std::strlen(name) >= sizeof address.sun_path) return -1;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, name, std::strlen(name));
  if (*name == '@') address.sun_path[0] = '\0';
  const std::size_t length =
      offsetof(sockaddr_un, sun_path) + std::strlen(name) + (*name == '@' ? 0 : 1);
  const int number = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (number < 0) return -1;
  if (connect(number, reinterpret_cast<const sockaddr*>(&address),
              static_cast<socklen_t>(length)) == 0)
    return number;
  close(number);
  return -1;
}

/// A message of the Mac's protocol, up to a small size.
class Message {
 public:
  void byte(char value) { bytes_[length_++] = value; }
  void number(std::size_t value) {
    for (int shift = 0; shift < 32; shift += 8) byte(static_cast<char>(value >> shift));
  }
  void text(const char* value) {
    constexpr char textKind = 4;
    byte(textKind);
    number(std::strlen(value));
    for (; *value != '\0'; ++value) byte(*value);
  }
  bool sendTo(int socket) const {
    char whole[sizeof bytes_ + 4];
    Message head;
    head.number(length_);
    std::memcpy(whole, head.bytes_, 4);
    std::memcpy(whole + 4, bytes_, length_);
    const auto size = static_cast<ssize_t>(length_ + 4);
    return send(socket, whole, static_cast<std::size_t>(size), MSG_NOSIGNAL) == size;
  }

 private:
  char bytes_[120]{};
  std::size_t length_ = 0;
};

/// Asks the Mac to answer when so much time has passed. -1 when nobody does.
int askFor(Nanoseconds length) {
  const int mac = isOwn() ? -1 : connectToMac();
  if (mac < 0) return mac;
  char time[32];
  std::snprintf(time, sizeof time, "%lldus",
                static_cast<long long>((length + microsecond - 1) / microsecond));
  constexpr char listKind = 5;
  Message message;
  message.byte(listKind);
  message.number(3);
  message.text("control");
  message.text("wait");
  message.text(time);
  if (message.sendTo(mac)) return mac;
  close(mac);
  return -1;
}

/// Whether the Mac has let the time pass. It is called when its answer can be read.
bool hasPassed(int mac) {
  constexpr std::size_t truth = 10;  // behind the length, a list's kind and count, and a kind
  char answer[truth + 1];
  std::size_t count = 0;
  while (count < sizeof answer) {
    const ssize_t some = recv(mac, answer + count, sizeof answer - count, 0);
    if (some <= 0) return false;
    count += static_cast<std::size_t>(some);
  }
  return answer[truth] == 1;
}

enum class Outcome { slept, interrupted, impossible };

Outcome sleepFor(Nanoseconds length) {
  if (length <= 0) return Outcome::slept;
  const Socket mac(askFor(length));
  if (mac.number() < 0) return Outcome::impossible;
  pollfd answer{mac.number(), POLLIN, 0};
  if (ORIGINAL(ppoll)(&answer, 1, nullptr, nullptr) < 0) return Outcome::interrupted;
  if (!hasPassed(mac.number())) return Outcome::impossible;
  ahead += length;
  return Outcome::slept;
}

/// The clocks that go on while a process sleeps; those of its work do not.
bool isOfTheWorld(clockid_t clock) {
  return clock != CLOCK_PROCESS_CPUTIME_ID && clock != CLOCK_THREAD_CPUTIME_ID && clock >= 0;
}

Nanoseconds now(clockid_t clock) {
  timespec time{};
  clock_gettime(clock, &time);
  return nanosecondsOf(time);
}

Nanoseconds roundedUp(Nanoseconds length) {
  constexpr Nanoseconds step = 100 * microsecond;
  return (length + step - 1) / step * step;
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  const int status = ORIGINAL(clock_gettime)(clock, time);
  if (status == 0 && isOfTheWorld(clock)) *time = timespecOf(nanosecondsOf(*time) + ahead);
  return status;
}

int gettimeofday(timeval* __restrict time, void* __restrict zone) noexcept {
  if (zone != nullptr) ORIGINAL(gettimeofday)(time, zone);
  const Nanoseconds present = now(CLOCK_REALTIME);
  *time = {present / second, present % second / microsecond};
  return 0;
}

time_t time(time_t* result) noexcept {
  const time_t present = now(CLOCK_REALTIME) / second;
  if (result != nullptr) *result = present;
  return present;
}

int clock_nanosleep(clockid_t clock, int flags, const timespec* request, timespec* left) {
  const bool isAbsolute = (flags & TIMER_ABSTIME) != 0;
  Nanoseconds length = nanosecondsOf(*request);
  // Whoever says until when has looked at the clock just before, which has gone on since.
  if (isAbsolute) length = roundedUp(length - now(clock));
  const Outcome outcome = isOfTheWorld(clock) ? sleepFor(length) : Outcome::impossible;
  if (outcome == Outcome::slept) return 0;
  if (outcome == Outcome::interrupted) {
    if (left != nullptr && !isAbsolute) *left = *request;
    return EINTR;
  }
  const timespec real = isAbsolute ? timespecOf(nanosecondsOf(*request) - ahead) : *request;
  return ORIGINAL(clock_nanosleep)(clock, flags, &real, left);
}

int nanosleep(const timespec* request, timespec* left) {
  const int error = clock_nanosleep(CLOCK_MONOTONIC, 0, request, left);
  if (error == 0) return 0;
  errno = error;
  return -1;
}

int thrd_sleep(const timespec* request, timespec* left) {
  const int error = clock_nanosleep(CLOCK_MONOTONIC, 0, request, left);
  return error == 0 ? 0 : error == EINTR ? -1 : -2;
}

int usleep(useconds_t length) {
  const timespec request = timespecOf(length * microsecond);
  return nanosleep(&request, nullptr);
}

unsigned sleep(unsigned length) {
  const timespec request = timespecOf(length * second);
  return nanosleep(&request, nullptr) == 0 ? 0 : length;
}

int ppoll(pollfd* descriptors, nfds_t count, const timespec* limit, const sigset_t* mask) {
  const auto real = ORIGINAL(ppoll);
  constexpr nfds_t most = 1024;
  const timespec none{};
  const bool waits = limit != nullptr && nanosecondsOf(*limit) > 0 && count < most;
  if (!waits) return real(descriptors, count, limit, mask);
  const int ready = real(descriptors, count, &none, mask);
  if (ready != 0) return ready;
  const Nanoseconds length = nanosecondsOf(*limit);
  const Socket mac(askFor(length));
  if (mac.number() < 0) return real(descriptors, count, limit, mask);
  pollfd all[most];
  if (count > 0) std::memcpy(all, descriptors, count * sizeof(pollfd));
  all[count] = {mac.number(), POLLIN, 0};
  if (real(all, count + 1, nullptr, mask) < 0) return -1;
  if (all[count].revents != 0) {
    if (!hasPassed(mac.number())) return real(descriptors, count, limit, mask);
    ahead += length;
  }
  return real(descriptors, count, &none, mask);
}

int poll(pollfd* descriptors, nfds_t count, int limit) {
  if (limit < 0) return ORIGINAL(poll)(descriptors, count, limit);
  const timespec length = timespecOf(limit * millisecond);
  return ppoll(descriptors, count, &length, nullptr);
}

// What compilers make of the two where they know how many descriptors there are.
int __poll_chk(pollfd* descriptors, nfds_t count, int limit, std::size_t /*size*/) {
  return poll(descriptors, count, limit);
}
int __ppoll_chk(pollfd* descriptors, nfds_t count, const timespec* limit, const sigset_t* mask,
                std::size_t /*size*/) {
  return ppoll(descriptors, count, limit, mask);
}

int pselect(int count, fd_set* __restrict readable, fd_set* __restrict writable,
            fd_set* __restrict exceptional, const timespec* __restrict limit,
            const sigset_t* __restrict mask) {
  const auto real = ORIGINAL(pselect);
  if (limit == nullptr || nanosecondsOf(*limit) <= 0) {
    return real(count, readable, writable, exceptional, limit, mask);
  }
  fd_set none;
  FD_ZERO(&none);
  const fd_set wanted[] = {readable != nullptr ? *readable : none,
                           writable != nullptr ? *writable : none,
                           exceptional != nullptr ? *exceptional : none};
  const auto look = [&](const timespec* length) {
    if (readable != nullptr) *readable = wanted[0];
    if (writable != nullptr) *writable = wanted[1];
    if (exceptional != nullptr) *exceptional = wanted[2];
    return real(count, readable, writable, exceptional, length, mask);
  };
  const timespec atOnce{};
  const int ready = look(&atOnce);
  if (ready != 0) return ready;
  const Nanoseconds length = nanosecondsOf(*limit);
  const Socket mac(askFor(length));
  if (mac.number() < 0 || mac.number() >= FD_SETSIZE) return look(limit);
  fd_set all[] = {wanted[0], wanted[1], wanted[2]};
  FD_SET(mac.number(), &all[0]);
  const int highest = mac.number() >= count ? mac.number() + 1 : count;
  if (real(highest, &all[0], &all[1], &all[2], nullptr, mask) < 0) return -1;
  if (FD_ISSET(mac.number(), &all[0])) {
    if (!hasPassed(mac.number())) return look(limit);
    ahead += length;
  }
  return look(&atOnce);
}

int select(int count, fd_set* __restrict readable, fd_set* __restrict writable,
           fd_set* __restrict exceptional, timeval* __restrict limit) {
  if (limit == nullptr) return pselect(count, readable, writable, exceptional, nullptr, nullptr);
  const timespec length = timespecOf(limit->tv_sec * second + limit->tv_usec * microsecond);
  return pselect(count, readable, writable, exceptional, &length, nullptr);
}

int epoll_pwait(int epoll, epoll_event* events, int most, int limit, const sigset_t* mask) {
  const auto real = ORIGINAL(epoll_pwait);
  if (limit <= 0) return real(epoll, events, most, limit, mask);
  const int ready = real(epoll, events, most, 0, mask);
  if (ready != 0) return ready;
  pollfd any{epoll, POLLIN, 0};
  const timespec length = timespecOf(limit * millisecond);
  if (ppoll(&any, 1, &length, mask) < 0) return -1;
  return real(epoll, events, most, 0, mask);
}

int epoll_wait(int epoll, epoll_event* events, int most, int limit) {
  return epoll_pwait(epoll, events, most, limit, nullptr);
}

}  // extern "C"
