#pragma once

#include <map>
#include <string>
#include <vector>

#include "simulator/text/draft.h"
#include "simulator/text/words.h"
#include "simulator/world/world.h"

/// Attributes as words of a line.
namespace simulator {

using Attributes = std::map<std::string, AttributeValue>;

/// Adds an attribute. One that is there already is an error.
void putAttribute(Words& words, Attributes& attributes, const std::string& name,
                  AttributeValue value);

/// Reads a text, a number, true or false.
AttributeValue readPlainValue(Words& words, const char* owner);

/// Reads what follows `attribute`: a name and a value. A value that is made of elements becomes a
/// link.
void readAttributeOption(Words& words, Attributes& attributes, std::vector<LinkDraft>& links);

/// Reads what follows `failing`.
void readFailingOption(Words& words, std::map<std::string, ax::Error>& failing);

}  // namespace simulator
