#pragma once

#include "simulator/mac/arguments.h"
#include "simulator/mac/mac.h"

/// How the world answers each call, one function a call; `answer` chooses among them.
namespace simulator {

/// Lets the world answer a call. Throws MalformedDatum for arguments of the wrong form.
/// `since` is when the call was made, now or before for one that was pending.
Answer answer(Mac& mac, Client& client, const platform::Call& call, Microseconds since);

namespace calls {

/// Answers one call. The world may change. There is one for each row of SEAM_CALLS.
using Function = Answer(Mac& mac, Client& client, const Arguments& arguments);

#define DECLARATION(function, name, shape) Function function;
SEAM_CALLS(DECLARATION)
#undef DECLARATION

/// The answer of a call that throws an error of that description; and of one that might have, and
/// gives this.
Answer thrown(const char* description);
Answer returned(driver::Datum value);

}  // namespace calls

}  // namespace simulator
