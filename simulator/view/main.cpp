#include <iostream>

#include "simulator/companion/failure.h"
#include "simulator/view/view.h"

/// simulated-mac-view PORT, as simulated-mac starts it.
int main(int argumentCount, char** arguments) {
  try {
    companion::viewMac(argumentCount > 1 ? arguments[1] : "0");
    return 0;
  } catch (const companion::Failure& failure) {
    std::cout << companion::failureLine(failure.what()) << std::endl;
    return 1;
  }
}
