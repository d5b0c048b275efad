// What the pixel values of a bit-plane picture mean, and rows of them as colours.
#pragma once

#include "iff/iff_archive.h"

#include <vector>

class BodyChunk;

enum class PixelKind : u8 {
    None,        // the colours are not known
    Indices,     // of the colour map
    TrueColour,  // red in the lowest eight bits, then green, then blue
    Ham,         // hold and modify: an index, or one component that changes against the pixel to the left
    HalfBrite    // indices of the colour map, whose entries follow once more at half the brightness
};

// Notes what the rules pass over.
PixelKind PixelKindOf(const BodyChunk& body, const ReadingRules& rules, PassedOver& passedOver);

bool HasColours(const BodyChunk& body, const ReadingRules& rules);

class IlbmColours {
  public:
    IlbmColours(const BodyChunk& body, PixelKind kind);

    // Entries; 0 where the values are no indices.
    u32 Count() const;

    // A row of blue, green and red. False at the first value that has no colour.
    bool PutRow(u8* pOut, const u32* pValues, u32 nWidth) const;

  private:
    bool PutHamRow(u8* pOut, const u32* pValues, u32 nWidth) const;

    PixelKind m_kind;
    u32 m_nPlanes;
    u32 m_nEntries = 0;          // of the map
    std::vector<u32> m_colours;  // words of 0x00RRGGBB: the map, and its second half where it has one
};
