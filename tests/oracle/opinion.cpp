#include "tests/oracle/opinion.h"

namespace oracle {

std::string nameOf(Silence silence) {
  switch (silence) {
    case Silence::happening:
      return "something happens meanwhile";
    case Silence::covered:
      return "the screens are covered";
    case Silence::pendingWrite:
      return "an earlier write has not landed";
    case Silence::waitingInput:
      return "input waits for a menu";
    case Silence::askedUser:
      return "the system asks whether the screen may be recorded";
    case Silence::unreadableBoard:
      return "the clipboard of others cannot be read";
    case Silence::hanging:
      return "the application hangs";
    case Silence::restless:
      return "children change when they are read";
    case Silence::slowTree:
      return "a tree that comes with time, slowly read";
    case Silence::slowWrite:
      return "a write that lands with time, slowly read";
    case Silence::livesOn:
      return "the command lives on";
    case Silence::outsideTheMac:
      return "it depends on the machine's own files";
    case Silence::repeatedText:
      return "the same text twice";
    case Silence::equallyLow:
      return "two controls equally low";
    case Silence::oddNumber:
      return "a number that is spelt oddly";
    case Silence::oddPath:
      return "a path that is no text";
    case Silence::onlyPromises:
      return "a clipboard that cannot be read";
    case Silence::shownDecoration:
      return "a decoration shown as the value, and a selection refused";
    case Silence::splitCharacter:
      return "a selection inside a character";
    case Silence::movedKeyboard:
      return "a text that moves the user's keyboard";
  }
  return "";
}

}  // namespace oracle
