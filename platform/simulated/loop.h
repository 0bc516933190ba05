#pragma once

namespace simulated {

/// Does what comes to the main flow, until its application's loop ends by itself.
void serveMainFlow();

}  // namespace simulated
