#include "simulator/calls/calls.h"

#include <array>

namespace simulator {

namespace {

// By platform::Function.
constexpr std::array<calls::Function*, platform::functionNames.size()> answers = {
#define ANSWER(function, name, shape) calls::function,
    SEAM_CALLS(ANSWER)
#undef ANSWER
};

}  // namespace

Answer answer(Mac& mac, Client& client, const platform::Call& call, Microseconds since) {
  const auto index = static_cast<std::size_t>(call.function);
  if (index >= answers.size()) throw driver::MalformedDatum();
  return answers[index](mac, client, Arguments(call, since));
}

}  // namespace simulator
