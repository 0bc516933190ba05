#pragma once

#include "simulator/text/draft.h"
#include "simulator/text/words.h"

/// The words that give an element more than plain attributes. Each reads what follows its word.
namespace simulator {

void readSliderRange(Words& words, ElementDraft& draft);
void readChoices(Words& words, ElementDraft& draft);
void readWhileHovered(Words& words, ElementDraft& draft);
void readAlsoUnder(Words& words, ElementDraft& draft);
void readRepeat(Words& words, ElementDraft& draft);
void readMenuState(Words& words, ElementDraft& draft, bool open);
void readTransform(Words& words, ElementDraft& draft);
void readIgnoresWrites(Words& words, ElementDraft& draft);
void readHalfOfWrites(Words& words, ElementDraft& draft);
void readLate(Words& words, ElementDraft& draft);
void readShowsPlaceholder(Words& words, ElementDraft& draft);
void readComposer(Words& words, ElementDraft& draft);
void readRejects(Words& words, ElementDraft& draft);
void readReplying(Words& words, ElementDraft& draft);
void readTakesFiles(Words& words, ElementDraft& draft);
void readGrows(Words& words, ElementDraft& draft);
void readShrinks(Words& words, ElementDraft& draft);

}  // namespace simulator
