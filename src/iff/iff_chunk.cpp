#include "iff/iff_chunk.h"

#include "iff/container.h"

IffChunk* IffChunk::FindProperty(IffId id) const {
    return m_pParent && m_pNode ? m_pParent->FindPropertyFrom(m_pNode, id) : nullptr;
}

void IffUnknownChunk::Transfer(IffArchive& archive) {
    if (archive.IsLoading()) {
        m_pData = LargeBlock();
        m_nSize = 0;
        if (!archive.Require(archive.GetRemaining())) return;
        m_nSize = static_cast<u32>(archive.GetRemaining());
        m_pData = LargeBlock::Allocate(m_nSize);
    }
    archive.TransferBytes(m_pData.Data(), m_nSize);
}
