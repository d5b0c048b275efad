#include "chunks/ilbm_chunks.h"

static_assert(sizeof(IffRgb) == 3, "colour map entries lie one after the other");

void BmhdChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nWidth);
    archive.Transfer(m_nHeight);
    archive.Transfer(m_nX);
    archive.Transfer(m_nY);
    archive.Transfer(m_nPlanes);
    archive.Transfer(m_nMasking);
    archive.Transfer(m_nCompression);
    archive.Transfer(m_nPad);
    archive.Transfer(m_nTransparentColour);
    archive.Transfer(m_nXAspect);
    archive.Transfer(m_nYAspect);
    archive.Transfer(m_nPageWidth);
    archive.Transfer(m_nPageHeight);
}

void CmapChunk::Transfer(IffArchive& archive) {
    if (archive.IsLoading()) {
        m_nEntries = 0;
        m_pEntries = LargeBlock();
        const i64 entries = archive.GetRemaining() / 3;
        if (!archive.Require(entries * 3)) return;
        m_nEntries = static_cast<u32>(entries);
        m_pEntries = LargeBlock::Allocate(u64{m_nEntries} * 3);
    }
    auto* const entries = reinterpret_cast<IffRgb*>(m_pEntries.Data());
    for (u32 i = 0; i < m_nEntries && !archive.HasFailed(); ++i) archive.Transfer(entries[i]);
}

void GrabChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nX);
    archive.Transfer(m_nY);
}
