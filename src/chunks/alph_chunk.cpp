#include "chunks/alph_chunk.h"

void AlphChunk::Transfer(IffArchive& archive) {
    archive.Transfer(m_nAlphaWidth);
    archive.Transfer(m_nAlphaHeight);
    archive.Transfer(m_nAlphaPlanes);
    archive.Transfer(m_nAlphaCompression);
    BodyChunk::Transfer(archive);
}

bool AlphChunk::ReadHeader() {
    m_nWidth = m_nAlphaWidth;
    m_nCompression = m_nAlphaCompression;
    m_nPlanes = m_nAlphaPlanes;
    return true;
}

RowLayout AlphChunk::LayoutUnder(const ReadingRules&, PassedOver&) const {
    return PlainLayout(m_nAlphaWidth, m_nAlphaPlanes);
}
