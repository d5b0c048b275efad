#include "display/ilbm_colours.h"

#include "chunks/body_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "kernels/row_kernels.h"

#include <algorithm>

namespace {

constexpr u32 HAM_MODE = 0x800;  // bits of the display mode
constexpr u32 HALF_BRITE_MODE = 0x80;
constexpr u32 HALF_BRITE_PLANES = 6;
constexpr u32 HALF_BRITE_ENTRIES = 32;
constexpr IffId ID_CAMG("CAMG");

const CmapChunk* MapOf(const BodyChunk& body) {
    return dynamic_cast<const CmapChunk*>(body.FindProperty(CmapChunk::ID));
}

const BmhdChunk* HeaderOf(const BodyChunk& body) {
    return dynamic_cast<const BmhdChunk*>(body.FindProperty(BmhdChunk::ID));
}

// The display mode that the body's form has, big-endian in the first of its chunks that is long enough; 0
// without one.
u32 DisplayMode(const BodyChunk& body) {
    u32 mode = 0;
    for (const IffChunkNode* node = body.m_pParent->m_pFirst; node; node = node->m_pNext) {
        const auto* const chunk = dynamic_cast<const IffUnknownChunk*>(node->m_pChunk.Get());
        if (!chunk || chunk->m_Id != ID_CAMG || chunk->m_nSize < sizeof(mode)) continue;
        for (u32 i = 0; i < sizeof(mode); ++i) mode = mode << 8 | chunk->m_pData.Data()[i];
        break;
    }
    return mode;
}

}  // namespace

PixelKind PixelKindOf(const BodyChunk& body, const ReadingRules& rules, PassedOver& passedOver) {
    const BmhdChunk* const header = HeaderOf(body);
    if (!header) return PixelKind::None;
    const u32 planes = header->m_nPlanes;
    if (rules.bTrueColour && (planes == 24 || planes == 32)) {
        passedOver.Add(Passed::TrueColour);
        return PixelKind::TrueColour;
    }
    const CmapChunk* const map = MapOf(body);
    if (!map) return PixelKind::None;
    if (rules.bHam && planes >= 5 && planes <= 8 && (DisplayMode(body) & HAM_MODE)) {
        passedOver.Add(Passed::Ham);
        return PixelKind::Ham;
    }
    if (rules.bHalfBrite && planes == HALF_BRITE_PLANES && map->m_nEntries <= HALF_BRITE_ENTRIES &&
        (DisplayMode(body) & HALF_BRITE_MODE)) {
        passedOver.Add(Passed::HalfBrite);
        return PixelKind::HalfBrite;
    }
    return PixelKind::Indices;
}

bool HasColours(const BodyChunk& body, const ReadingRules& rules) {
    PassedOver passedOver;
    return PixelKindOf(body, rules, passedOver) != PixelKind::None;
}

IlbmColours::IlbmColours(const BodyChunk& body, PixelKind kind)
    : m_kind(kind), m_nPlanes(HeaderOf(body)->m_nPlanes) {
    const CmapChunk* const map = MapOf(body);
    if (!map) return;
    m_nEntries = map->m_nEntries;
    m_colours.resize(m_nEntries);
    for (u32 i = 0; i < m_nEntries; ++i) {
        const IffRgb entry = map->Entries()[i];
        m_colours[i] = u32{entry.red} << 16 | u32{entry.green} << 8 | entry.blue;
    }
    if (kind != PixelKind::HalfBrite) return;
    m_colours.resize(2 * HALF_BRITE_ENTRIES);
    for (u32 i = 0; i < m_nEntries; ++i) m_colours[HALF_BRITE_ENTRIES + i] = m_colours[i] >> 1 & 0x7F7F7F;
}

u32 IlbmColours::Count() const {
    switch (m_kind) {
        case PixelKind::Indices:
            return m_nEntries;
        case PixelKind::HalfBrite:
            return 2 * HALF_BRITE_ENTRIES;
        default:
            return 0;
    }
}

bool IlbmColours::PutRow(u8* pOut, const u32* pValues, u32 nWidth) const {
    switch (m_kind) {
        case PixelKind::Indices:
            return TheRowKernels().ColourMap(pOut, pValues, nWidth, m_colours.data(), m_nEntries);
        case PixelKind::HalfBrite:
            // Between the two halves of a short map nothing has a colour.
            if (std::any_of(pValues, pValues + nWidth,
                            [&](u32 nValue) { return nValue % HALF_BRITE_ENTRIES >= m_nEntries; }))
                return false;
            return TheRowKernels().ColourMap(pOut, pValues, nWidth, m_colours.data(), 2 * HALF_BRITE_ENTRIES);
        case PixelKind::TrueColour:
            for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
                pOut[0] = static_cast<u8>(pValues[x] >> 16);
                pOut[1] = static_cast<u8>(pValues[x] >> 8);
                pOut[2] = static_cast<u8>(pValues[x]);
            }
            return true;
        case PixelKind::Ham:
            return PutHamRow(pOut, pValues, nWidth);
        default:
            return false;
    }
}

// The low bits are a value, and the bits above say of what: 0 of the map, 1 of blue, 2 of red, 3 of green. A
// row begins with the map's first entry.
bool IlbmColours::PutHamRow(u8* pOut, const u32* pValues, u32 nWidth) const {
    const u32 bits = m_nPlanes >= 7 ? 6 : 4;
    const u32 mask = (1u << bits) - 1;
    const auto widened = [bits](u32 nValue) {
        return static_cast<u8>(bits == 6 ? nValue << 2 | nValue >> 4 : nValue << 4 | nValue);
    };
    if (m_nEntries == 0) return false;
    u32 colour = m_colours[0];
    const auto set = [&colour](u32 nShift, u8 nComponent) {
        colour = (colour & ~(0xFFu << nShift)) | u32{nComponent} << nShift;
    };
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        const u32 value = pValues[x] & mask;
        const u32 what = pValues[x] >> bits;
        if (what == 0 && value >= m_nEntries) return false;
        if (what == 0) colour = m_colours[value];
        if (what == 1) set(0, widened(value));
        if (what == 2) set(16, widened(value));
        if (what == 3) set(8, widened(value));
        pOut[0] = static_cast<u8>(colour);
        pOut[1] = static_cast<u8>(colour >> 8);
        pOut[2] = static_cast<u8>(colour >> 16);
    }
    return true;
}
