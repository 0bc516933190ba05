#include "simulator/calls.h"

#include <array>

namespace simulator {

namespace {

// By the order of platform::Function.
constexpr std::array<calls::Function*, platform::functionNames.size()> answers = {
    calls::uptime,
    calls::sleep,
    calls::environment,
    calls::nullSignal,
    calls::exit,
    calls::fullUserName,
    calls::loginName,
    calls::givenName,
    calls::writeOutput,
    calls::replaceFile,
    calls::listDirectory,
    calls::fileExists,
    calls::openLibrary,
    calls::findSymbol,
    calls::findLoadedSymbol,
    calls::axAttribute,
    calls::axAttributes,
    calls::axActionNames,
    calls::axElementAt,
    calls::axPerform,
    calls::axSetAttribute,
    calls::axTrusted,
    calls::createSource,
    calls::createEvent,
    calls::createMouseEvent,
    calls::createScrollEvent,
    calls::publicPost,
    calls::privatePost,
    calls::postRecord,
    calls::processForPid,
    calls::frontProcess,
    calls::processPid,
    calls::axGetWindow,
    calls::windows,
    calls::windowDescription,
    calls::session,
    calls::displayMode,
    calls::captureAccess,
    calls::application,
    calls::applicationsWithBundle,
    calls::applications,
    calls::frontmost,
    calls::unhide,
    calls::activationPolicy,
    calls::shareContent,
    calls::screenshot,
    calls::loadImage,
    calls::pngOfImage,
    calls::pixelsOfImage,
};

}  // namespace

Answer answer(Mac& mac, Client& client, const platform::Call& call) {
  const auto index = static_cast<std::size_t>(call.function);
  if (index >= answers.size()) throw driver::MalformedDatum();
  return answers[index](mac, client, Arguments(call));
}

}  // namespace simulator
