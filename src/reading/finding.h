// The first rule of its format that a file was found to break. A reader notes it where the rule stands, in
// numbers; document/finding_text.h has the words.
#pragma once

#include "base/types.h"

#include <vector>

enum class Rule : u8 {
    None,

    // Any file.
    DataEnds,
    SourceFailed,     // found: the system's error number, 0 where it gave none
    SourceTooLarge,   // read: the longest source, in bytes
    NotEnoughMemory,  // found: the bytes that it takes, read: those left of the limit; 0 without one
    NotAsked,         // another reader had left the source in a state in which nothing can be read

    // Photoshop documents.
    PsdSignature,
    PsdVersion,
    PsdChannelCount,
    PsdRows,
    PsdColumns,
    PsdDepth,
    PsdColourMode,
    PsdPaletteLength,
    PsdResourceSignature,
    PsdResourceSize,
    PsdAlphaNames,
    PsdSectionLength,  // found: the length, read: what its parts take
    PsdLayersPadded,   // found: bytes after the last channel
    PsdChannelsBeyondData,
    PsdChannelLength,
    PsdBlendSignature,
    PsdMaskSize,
    PsdExtraLength,  // found: the length, read: what the record's fields take
    PsdZip,
    PsdChannelCompression,
    PsdRawLength,
    PsdPackedLength,
    PsdTooFewPackedBytes,
    PsdPackedRow,
    PsdTaggedBlocks,  // what reads like a compression begins one
    PsdCompositeCompression,

    // IFF files.
    IffTooLarge,
    IffOutermostId,    // found: the id, its characters in file order
    IffNesting,        // found: containers one inside another
    IffChunkSize,      // that no chunk can have
    IffOverrun,        // a chunk is larger than what is left of its container
    IffChunkTooShort,  // for the fields of its class
    IffContainerEnds,  // inside what stands between its chunks
    IffBlocksSize,

    Count
};

// What was being read. Parts of a Photoshop document come first, then those of a chunk.
enum class Place : u8 {
    Signature,
    Header,
    ColourModeData,
    Resources,
    Resource,
    LayersAndMasks,
    Layers,
    LayerRecord,
    ChannelInfo,
    Layer,
    LayerMask,
    Channel,
    ChannelRow,
    GlobalMasks,
    Composite,
    CompositeRow,

    OutermostId,
    ChunkId,
    ChunkSize,
    Container,
    ContainerType,
    ChunkBody,
    PadByte,

    Count
};

struct Finding {
    Rule rule = Rule::None;
    Place place = Place::Signature;
    u32 nIndex = 0;    // of the resource or the layer
    u32 nChannel = 0;  // of the layer, or of the composite
    u32 nRow = 0;      // of the channel

    // Byte of the file: the first one of the field or the data that broke the rule. Where a length and what
    // it is the length of disagree, of the length; where the data ends, the file's length.
    u32 nPosition = 0;

    i64 nFound = 0;
    i64 nRead = 0;          // what would have been read in its place, or the most of it
    std::vector<u32> path;  // ids of the chunks around the place, the innermost first, as in the file
};
