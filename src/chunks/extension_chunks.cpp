#include "chunks/extension_chunks.h"

#include <utility>

void TranChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nByte);
    archive.Transfer(m_nFirst);
    archive.Transfer(m_nSecond);
    archive.Transfer(m_Colour);
}

void ContChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nLevels);
    archive.Transfer(m_nByte);
}

void S3tcChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nValue);
    archive.Transfer(m_Code);
    archive.Transfer(m_nFirst);
    archive.Transfer(m_nSecond);
    archive.Transfer(m_nThird);
    archive.Transfer(m_nWidth);
    archive.Transfer(m_nHeight);
    archive.Transfer(m_nDataSize);
    if (archive.IsLoading()) {
        m_pData = LargeBlock();
        const u32 claimed = std::exchange(m_nDataSize, 0);
        if (archive.HasFailed()) return;
        const i32 held = archive.GetRemaining();
        if (i64{claimed} > held) archive.RefuseField(sizeof(claimed), Rule::IffBlocksSize, claimed, held);
        if (claimed == 0 || !archive.Require(claimed)) return;
        m_nDataSize = claimed;
        m_pData = LargeBlock::Allocate(m_nDataSize);
    }
    archive.TransferBytes(m_pData.Data(), m_nDataSize);
}
