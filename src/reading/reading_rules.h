// How strictly files are read: what readers and builder ask for where a rule stands. Handed down from whoever
// opens a file.
#pragma once

#include "base/types.h"

// A rule that is true reads on where the strict one refuses, or shows what the strict one shows otherwise.
struct ReadingRules {
    // Photoshop documents.
    u32 nMostChannels;  // of the composite
    u32 nLongestSide;   // rows or columns of an image of version 1, of its layers and of their masks
    // Every length bounds its part and is bounded by the part around it; what is left of a part is skipped.
    // Strictly a length is compared with what its part took, and leads on modulo 2^32.
    bool bBoundedParts = false;
    bool bVersion2 = false;      // the large document format
    bool bFloats = false;        // 32 bits a sample, made 8 bits while they are read
    bool bResources = false;     // with any signature; the first that is none ends them
    bool bLongPieces = false;    // data of a resource or of a layer's channel of 16 MiB and more
    bool bPadding = false;       // more than one byte after the last layer's last channel
    bool bEmptyLayers = false;   // of no rows or columns, or turned inside out
    bool bEmptyMasks = false;    // likewise
    bool bMaskData = false;      // of another length than 20
    bool bZip = false;           // compressed channels
    bool bDeepLayers = false;    // of 16 or 32 bits a sample, and in a tagged block of their own
    bool bLooseRows = false;     // PackBits rows that are their packed bytes, whatever those make
    bool bGlobalMask = false;    // of another length than its records take, or left out
    bool bTaggedBlocks = false;  // before the composite
    bool bPackedDepths = false;  // PackBits composites of other depths than 8 bits
    bool bBrokenParts = false;   // a channel, all layers or the composite may be missing
    bool bLayerColours = false;  // a layer is shown in the document's colour mode
    bool bUnicodeNames = false;  // of layers, where they have one

    // IFF files.
    u32 nDeepestContainer;     // containers one inside another
    bool bPadByte = false;     // may be missing at the very end of a container or of the file
    bool bNested = false;      // a picture anywhere, where it is not looked for
    bool bChunky = false;      // one byte a pixel
    bool bPaddedRows = false;  // plane rows of an even length, where the data is enough for them
    bool bMaskPlane = false;   // is left out, where the data is enough for one
    bool bTrueColour = false;  // 24 or 32 planes are red, green and blue
    bool bHam = false;         // hold and modify
    bool bHalfBrite = false;   // 32 more entries of the colour map, of half the brightness
};

inline constexpr ReadingRules STRICT = {
    .nMostChannels = 24,
    .nLongestSide = 30000,
    .nDeepestContainer = 4096,
};

inline constexpr ReadingRules TOLERANT = {
    .nMostChannels = 57,
    .nLongestSide = STRICT.nLongestSide,
    .bBoundedParts = true,
    .bVersion2 = true,
    .bFloats = true,
    .bResources = true,
    .bLongPieces = true,
    .bPadding = true,
    .bEmptyLayers = true,
    .bEmptyMasks = true,
    .bMaskData = true,
    .bZip = true,
    .bDeepLayers = true,
    .bLooseRows = true,
    .bGlobalMask = true,
    .bTaggedBlocks = true,
    .bPackedDepths = true,
    .bBrokenParts = true,
    .bLayerColours = true,
    .bUnicodeNames = true,
    .nDeepestContainer = STRICT.nDeepestContainer,
    .bPadByte = true,
    .bNested = true,
    .bChunky = true,
    .bPaddedRows = true,
    .bMaskPlane = true,
    .bTrueColour = true,
    .bHam = true,
    .bHalfBrite = true,
};
