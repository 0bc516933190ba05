#include "simulator/companion/descriptor.h"

#include <unistd.h>

namespace companion {

Descriptor::~Descriptor() {
  if (number_ >= 0) close(number_);
}

}  // namespace companion
