#include "chunks/body_chunk.h"

#include "chunks/byte_run.h"
#include "chunks/ilbm_chunks.h"
#include "iff/container.h"
#include "kernels/row_kernels.h"

#include <algorithm>

void BodyChunk::Transfer(IffArchive& archive) {
    if (archive.IsLoading()) {
        m_nDataSize = 0;
        m_pData = LargeBlock();
        if (!archive.Require(archive.GetRemaining())) return;
        m_nDataSize = static_cast<u32>(archive.GetRemaining());
        m_pData = LargeBlock::Allocate(m_nDataSize);
    }
    archive.TransferBytes(m_pData.Data(), m_nDataSize);
}

bool BodyChunk::ReadHeader() {
    const auto* const header = dynamic_cast<const BmhdChunk*>(FindProperty(BmhdChunk::ID));
    if (!header) return false;
    m_nWidth = header->m_nWidth;
    m_nCompression = header->m_nCompression;
    m_nPlanes = header->m_nPlanes;
    return true;
}

RowLayout BodyChunk::PlainLayout(u32 nWidth, u32 nPlanes) const {
    return {nPlanes, nPlanes, (nWidth + 7) / 8, false};
}

// Bytes that the rows stand in, whatever they are packed to.
u64 BodyChunk::UnpackedSize(const BmhdChunk& header) const {
    return header.m_nCompression == 0 ? m_nDataSize : ByteRunLength(m_pData.Data(), m_nDataSize);
}

RowLayout BodyChunk::LayoutUnder(const ReadingRules& rules, PassedOver& passedOver) const {
    const auto* const header = dynamic_cast<const BmhdChunk*>(FindProperty(BmhdChunk::ID));
    if (!header) return {};
    const u32 width = header->m_nWidth;
    const u32 rows = header->m_nHeight;
    RowLayout layout = PlainLayout(width, header->m_nPlanes);
    if (rules.bChunky && m_pParent->m_Type == ID_PBM) {
        passedOver.Add(Passed::Chunky);
        return {1, 1, width + width % 2, true};
    }
    const bool mayHaveMask = rules.bMaskPlane && header->m_nMasking == BmhdChunk::HAS_MASK;
    const u32 padded = layout.nPlaneRowSize + layout.nPlaneRowSize % 2;
    const bool mayBePadded = rules.bPaddedRows && padded != layout.nPlaneRowSize;
    if (!mayHaveMask && !mayBePadded) return layout;
    const u64 held = UnpackedSize(*header);
    if (mayHaveMask && held >= (u64{layout.nPlanes} + 1) * layout.nPlaneRowSize * rows) {
        passedOver.Add(Passed::MaskPlane);
        ++layout.nPlaneRows;
    }
    if (mayBePadded && held >= u64{layout.nPlaneRows} * padded * rows) {
        passedOver.Add(Passed::PaddedRows);
        layout.nPlaneRowSize = padded;
    }
    return layout;
}

bool BodyChunk::BeginRows(const ReadingRules& rules) {
    EndRows();
    if (!m_pData || !ReadHeader()) return false;
    PassedOver passedOver;
    m_pRows = std::make_unique<Rows>();
    m_pRows->layout = LayoutUnder(rules, passedOver);
    m_pRows->pValues = std::make_unique<u32[]>(m_nWidth);
    if (m_nCompression != 0)
        m_pRows->pUnpacked = std::make_unique_for_overwrite<u8[]>(m_pRows->layout.Size());
    m_pCursor = m_pData.Data();
    m_nRemaining = m_nDataSize;
    return true;
}

const u32* BodyChunk::DecodeRow() {
    if (!m_pCursor || !m_pRows) return nullptr;
    const u8* const planes = NextPlaneRows();
    if (!planes) return nullptr;
    u32* const values = m_pRows->pValues.get();
    const RowLayout& layout = m_pRows->layout;
    // No data bounds how many such rows there are, so that they must cost nothing: they stay the zeroes that
    // they were made as.
    if (layout.nPlanes == 0) return values;
    if (layout.bChunky)
        std::copy_n(planes, m_nWidth, values);
    else
        TheRowKernels().PlanesToValues(values, planes, m_nWidth, layout.nPlanes, layout.nPlaneRowSize);
    return values;
}

void BodyChunk::EndRows() {
    m_pCursor = nullptr;
    m_nRemaining = 0;
    m_pRows.reset();
}

bool BodyChunk::CanFillRows(u32 nRows) const {
    if (!m_pCursor) return false;
    const u64 rowSize = m_pRows->layout.Size();
    const u64 leastRowSize = m_nCompression == 0 ? rowSize : LeastByteRunSize(rowSize);
    return leastRowSize * nRows <= m_nDataSize;
}

// The plane rows of the next row, or null when the data ends before them.
const u8* BodyChunk::NextPlaneRows() {
    const u32 rowSize = static_cast<u32>(m_pRows->layout.Size());
    if (m_nCompression != 0) {
        ByteRunSource source{m_pCursor, m_nRemaining};
        const bool whole = UnpackByteRun(m_pRows->pUnpacked.get(), rowSize, source);
        m_pCursor = source.pCursor;
        m_nRemaining = source.nRemaining;
        return whole ? m_pRows->pUnpacked.get() : nullptr;
    }
    const u8* const row = m_pCursor;
    const bool whole = m_nRemaining >= rowSize;
    const u32 taken = whole ? rowSize : m_nRemaining;
    m_pCursor += taken;
    m_nRemaining -= taken;
    return whole ? row : nullptr;
}
