// The small picture that a document is told by among others.
#pragma once

#include "base/large_block.h"
#include "display/shrink.h"

class CVistrelDoc;

struct Thumbnail {
    SideLengths sides;
    SideLengths original;  // of the document
    LargeBlock pixels;     // red, green and blue bytes, the top row first; nothing where there is no picture
};

// Made of the composite or, where the document has none to look at, of the largest layer that has a picture.
// No side is longer than nMostSide, none longer than the picture's. Throws CMemoryException.
Thumbnail ThumbnailOf(const CVistrelDoc& document, u32 nMostSide);
