// How strictly files are read: the limits that both readers ask for where a rule stands. Handed down from
// whoever opens a file.
#pragma once

#include "base/types.h"

struct ReadingRules {
    // Photoshop documents.
    u32 nMostChannels;      // of the composite
    u32 nLongestSide;       // rows or columns of an image, a layer or a mask
    u32 nPieceLimit;        // bytes; the data of a resource or of a layer's channel is shorter
    u32 nMostLayerPadding;  // bytes that may follow the last layer's last channel

    // IFF files.
    u32 nDeepestContainer;  // containers one inside another
};

inline constexpr ReadingRules STRICT = {
    .nMostChannels = 24,
    .nLongestSide = 30000,
    .nPieceLimit = 1 << 24,
    .nMostLayerPadding = 1,
    .nDeepestContainer = 4096,
};
