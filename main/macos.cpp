#include <string>
#include <vector>

#include "main/dispatcher.h"
#include "platform/process.h"

int main(int argumentCount, char** arguments) {
  process::exit(driver::run(std::vector<std::string>(arguments, arguments + argumentCount)));
}
