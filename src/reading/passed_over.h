// What tolerant reading passed over in a file, and how often. document/passed_text.h has the words.
#pragma once

#include "base/types.h"

#include <array>
#include <cstddef>

// In the order in which they are told.
enum class Passed : u8 {
    // Photoshop documents.
    Version2,
    MoreChannels,
    Floats,
    Resources,
    LongPieces,
    Padding,
    EmptyLayers,
    EmptyMasks,
    MaskData,
    Zip,
    DeepLayers,
    LooseRows,
    GlobalMask,
    TaggedBlocks,
    PackedDepths,
    BrokenChannels,
    BrokenLayers,
    BrokenComposite,
    NoMergedPicture,

    // IFF files.
    PadByte,
    Nested,
    Chunky,
    PaddedRows,
    MaskPlane,
    TrueColour,
    Ham,
    HalfBrite,

    Count
};

class PassedOver {
  public:
    void Add(Passed what) { ++m_counts[static_cast<size_t>(what)]; }
    u32 CountOf(Passed what) const { return m_counts[static_cast<size_t>(what)]; }

  private:
    std::array<u32, static_cast<size_t>(Passed::Count)> m_counts = {};
};
