#pragma once

#include "simulator/text/draft.h"
#include "simulator/text/words.h"

/// Places of elements that are told by what is around them.
namespace simulator {

/// Each reads what stands behind its word.
void readBelow(Words& words, ElementDraft& draft);
void readRightOf(Words& words, ElementDraft& draft);
void readInside(Words& words, ElementDraft& draft);
void readFill(Words& words, ElementDraft& draft);
void readWidth(Words& words, ElementDraft& draft);
void readHeight(Words& words, ElementDraft& draft);

/// Takes `at` and `size` of the line into its layout, if it has one. Throws when they contradict
/// it.
void completeLayout(const Words& words, ElementDraft& draft);

/// The frame of an element that is the last one of its parent. Throws when what it goes by is not
/// there, or has no frame.
Rect frameOf(const Words& words, const Application& application, const Element& element,
             const Layout& layout);

}  // namespace simulator
