#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/call.h"

/// The process's way to the simulated Mac, and what the simulated side of the seam shares.
namespace simulated {

/// The channel that every seam function uses. Unless one was set, it is made on first use: the one
/// that the environment variable SIMULATED_MAC names, or one without a Mac behind it.
platform::Channel& channel();

/// Uses `channel` from now on, or none (so that the next use makes one). Borrowed.
void setChannel(platform::Channel* channel);

/// Makes one call; its arguments are packed in order.
template <class... Arguments>
driver::Datum ask(platform::Function function, const Arguments&... arguments) {
  platform::Call call{function, {}};
  call.arguments.reserve(sizeof...(arguments));
  (call.arguments.push_back(driver::pack(arguments)), ...);
  return channel().call(std::move(call));
}

/// The same, with the answer as a value of type T.
template <class T, class... Arguments>
T askFor(platform::Function function, const Arguments&... arguments) {
  return driver::unpack<T>(ask(function, arguments...));
}

/// The same for an answer that may be a platform error, which is thrown.
template <class T, class... Arguments>
T askOrThrow(platform::Function function, const Arguments&... arguments) {
  // A platform::Thrown, taken apart without copies.
  auto parts = driver::datum_detail::as<driver::Datum::List>(ask(function, arguments...));
  if (parts.size() != 2) throw driver::MalformedDatum();
  const auto error = driver::unpack<std::optional<std::string>>(parts[0]);
  if (error) throw platform::PlatformError(*error);
  return driver::unpack<T>(std::move(parts[1]));
}

/// How many handles made by `makeHandle` are alive.
long liveHandles();
void countHandle(long change);

/// A handle of the seam around an object of the simulated side.
template <class Handle, class T>
Handle makeHandle(T object) {
  countHandle(1);
  return Handle(std::shared_ptr<void>(new T(std::move(object)), [](void* pointer) {
    delete static_cast<T*>(pointer);
    countHandle(-1);
  }));
}

/// The object inside a handle that `makeHandle` made. Borrowed.
template <class T, class Handle>
T& objectOf(const Handle& handle) {
  return *static_cast<T*>(handle.get());
}

/// The simulated stand-in for a private symbol; null for a name that has none.
void* privateFunction(const std::string& name);

}  // namespace simulated
