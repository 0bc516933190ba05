#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "simulator/rules/pace.h"
#include "simulator/rules/rules.h"
#include "simulator/text/parse.h"

namespace testing_support {

using Sentences = std::vector<std::string>;

/// The calls of one run as they come to the rules, for a run of "bg-click Notes". Application 40 is
/// in front; 41, Notes, has the windows 7 "Inbox", 8 "Outbox" and 9, an untitled one; 900 is a
/// process.
class broken_run : public testing::Test {
 protected:
  static constexpr const char* desk = R"(
    process 900
    app Browser pid 40 frontmost
        window 5 "Start" at 0,0 size 50x50
    app Notes pid 41
        window 7 "Inbox" at 100,100 size 200x200
        window 8 "Outbox" at 100,100 size 200x200
        window 9 at 100,100 size 200x200
)";
  static constexpr const char* done = "{\"ok\":true}\n";
  static constexpr const char* refused = "{\"error\":\"x\",\"ok\":false}\n";
  static constexpr std::uint32_t leftDown = 1;
  static constexpr std::uint32_t leftUp = 2;
  static constexpr std::uint32_t rightDown = 3;
  static constexpr std::uint32_t moved = 5;
  static constexpr std::uint32_t keyDown = 10;
  static constexpr std::uint32_t keyUp = 11;

  broken_run() {
    mac_.world = simulator::parseWorld(desk);
    client_.pid = 5'000'000;
    client_.arguments = {"driver", "bg-click", "Notes", "1", "2"};
  }

  void call(platform::Function function, driver::Datum::List arguments, driver::Datum answer = {},
            simulator::Microseconds delay = 0) {
    before(function, arguments);
    after(function, std::move(arguments), std::move(answer), delay);
  }

  void before(platform::Function function, driver::Datum::List arguments) {
    rules_.before({function, std::move(arguments)}, 0, violations_);
  }

  void after(platform::Function function, driver::Datum::List arguments, driver::Datum answer,
             simulator::Microseconds delay = 0) {
    rules_.after({function, std::move(arguments)}, {std::move(answer), delay}, false, 0,
                 violations_);
  }

  platform::EventImage event(std::uint32_t type, simulator::WindowNumber window = 7) {
    platform::EventImage image;
    image.identity = ++identity_;
    image.type = type;
    image.flags = 0;
    image.privateFields = {{0, 3}, {51, window}};
    image.publicFields = {{42, 0x5A545256}};
    return image;
  }

  platform::EventImage key(std::uint32_t type, std::int64_t code, std::uint64_t flags = 0) {
    platform::EventImage image;
    image.identity = ++identity_;
    image.type = type;
    image.keyCode = code;
    image.flags = flags;
    image.publicFields = {{42, 0x5A545256}};
    return image;
  }

  void postOnly(const platform::EventImage& image, simulator::Pid pid = 41,
                platform::Function route = platform::Function::privatePost) {
    call(route, {driver::pack(pid), driver::pack(image)});
  }

  void post(const platform::EventImage& image, simulator::Pid pid = 41) {
    postOnly(image, pid);
    sleep(simulator::waitAfterPost);
    if (image.type == 1 || image.type == 3) sleep(1'000);
  }

  void sleep(std::uint32_t microseconds) {
    call(platform::Function::sleep, {driver::pack(microseconds)});
  }

  void checkSession() {
    const simulator::Session& session = mac_.world.session;
    call(platform::Function::session, {},
         driver::pack(std::optional(windowserver::Session{session.locked, session.onConsole})));
  }

  void checkService(bool alive) {
    call(platform::Function::nullSignal, {driver::pack(simulator::Pid{900})}, driver::pack(alive));
  }

  void focusRecord(bool give, std::int32_t status = 0) {
    std::string record(248, '\0');
    record[0x08] = 0x0D;
    record[0x8A] = give ? 1 : 2;
    call(platform::Function::postRecord, {driver::pack(0), driver::pack(41), driver::pack(record)},
         driver::pack(status));
    sleep(40'000);
  }

  /// The run asks for the foreground and is told this process; 0: it is told nothing.
  void askForFront(simulator::Pid front) {
    const std::int64_t status = front == 0 ? -600 : 0;
    call(platform::Function::frontProcess, {},
         driver::pack(std::vector<std::int64_t>{status, 0, front}));
    if (front == 0) return;
    call(platform::Function::processPid, {driver::pack(0), driver::pack(front)},
         driver::pack(std::vector<std::int64_t>{0, 0, front}));
  }

  void askForSerial(std::int64_t status) {
    call(platform::Function::processForPid, {driver::pack(41)},
         driver::pack(std::vector<std::int64_t>{status, 0, 41}));
  }

  /// The run ends: what was broken from its start to its end.
  Sentences end(const std::string& output = "{\"error\":\"x\",\"ok\":false}\n", int status = 0) {
    client_.output = output;
    client_.exited = true;
    client_.status = status;
    rules_.finish(violations_);
    return violations_;
  }

  simulator::Mac mac_;
  simulator::Client client_;
  simulator::Rules rules_{mac_, client_};
  simulator::Rules::Violations violations_;
  std::int64_t identity_ = 0;
};

}  // namespace testing_support
