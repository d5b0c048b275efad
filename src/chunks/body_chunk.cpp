#include "chunks/body_chunk.h"

#include "chunks/byte_run.h"
#include "chunks/ilbm_chunks.h"
#include "chunks/plane_rows.h"

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

bool BodyChunk::BeginRows() {
    EndRows();
    if (!m_pData || !ReadHeader()) return false;
    m_pRow = std::make_unique_for_overwrite<u32[]>(m_nWidth);
    if (m_nCompression != 0) m_pUnpacked = std::make_unique_for_overwrite<u8[]>(m_nPlanes * PlaneRowSize());
    m_pCursor = m_pData.Data();
    m_nRemaining = m_nDataSize;
    return true;
}

const u32* BodyChunk::DecodeRow() {
    if (!m_pCursor || !m_pRow) return nullptr;
    const u8* const planes = NextPlaneRows();
    if (!planes) return nullptr;
    PlanesToValues(m_pRow.get(), planes, m_nWidth, m_nPlanes);
    return m_pRow.get();
}

void BodyChunk::EndRows() {
    m_pCursor = nullptr;
    m_nRemaining = 0;
    m_pRow.reset();
    m_pUnpacked.reset();
}

bool BodyChunk::CanFillRows(u32 nRows) const {
    if (!m_pCursor) return false;
    const u64 rowSize = u64{m_nPlanes} * PlaneRowSize();
    const u64 leastRowSize = m_nCompression == 0 ? rowSize : LeastByteRunSize(rowSize);
    return leastRowSize * nRows <= m_nDataSize;
}

// The plane rows of the next row, or null when the data ends before them.
const u8* BodyChunk::NextPlaneRows() {
    const u32 rowSize = m_nPlanes * PlaneRowSize();
    if (m_nCompression != 0) {
        ByteRunSource source{m_pCursor, m_nRemaining};
        const bool whole = UnpackByteRun(m_pUnpacked.get(), rowSize, source);
        m_pCursor = source.pCursor;
        m_nRemaining = source.nRemaining;
        return whole ? m_pUnpacked.get() : nullptr;
    }
    const u8* const row = m_pCursor;
    const bool whole = m_nRemaining >= rowSize;
    const u32 taken = whole ? rowSize : m_nRemaining;
    m_pCursor += taken;
    m_nRemaining -= taken;
    return whole ? row : nullptr;
}
