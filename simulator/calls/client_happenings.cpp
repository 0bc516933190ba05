#include "simulator/calls/client_happenings.h"

#include "simulator/mac/sharing_streams.h"

namespace simulator {

namespace {

using platform::ItemKind;

void queue(Client& client, ItemKind kind, std::int64_t number = 0) {
  client.items.push_back({kind, number, 0, {}});
}

void signal(Client& client, int number) {
  if (client.handledSignals.count(number) != 0) {
    queue(client, ItemKind::signal, number);
  } else {
    client.diedBySignal = number;
  }
}

void happenTo(Client& client, const Happening& happening) {
  switch (happening.kind) {
    case Happening::Kind::signalProcesses:
      signal(client, happening.number);
      break;
    case Happening::Kind::input:
      client.input += happening.text;
      break;
    case Happening::Kind::closeInput:
      client.inputClosed = true;
      break;
    case Happening::Kind::closeOutput:
      client.outputClosed = true;
      break;
    case Happening::Kind::stallOutput:
      client.readerStalls = true;
      break;
    case Happening::Kind::resumeOutput:
      client.readerStalls = false;
      break;
    case Happening::Kind::requestTermination:
      queue(client, ItemKind::terminationRequest);
      break;
    case Happening::Kind::removeDisplays:
    case Happening::Kind::connectDisplay:
    case Happening::Kind::disconnectDisplay:
      queue(client, ItemKind::screenChange);
      break;
    case Happening::Kind::endApplicationLoop:
      queue(client, ItemKind::loopEnd);
      break;
    default:
      break;
  }
}

}  // namespace

void happenToClients(Mac& mac, const Happening& happening) {
  if (happening.kind == Happening::Kind::stopSharing) {
    stopSharing(mac, happening.pid, happening.text);
  } else if (happening.kind == Happening::Kind::withdrawRecording) {
    stopSharing(mac, 0, captureDeclined);
  }
  for (const auto& client : mac.clients) {
    if (!client->exited) happenTo(*client, happening);
  }
}

}  // namespace simulator
