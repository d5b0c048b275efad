#include "psd/psd_image.h"

#include "base/checked_size.h"

#include <new>

void PsdImage::Clear() {
    m_pPalette.reset();
    FreePlanes();
    m_Resources.RemoveAll();
    m_Layers.RemoveAll();
    m_GlobalMasks.RemoveAll();
}

u64 PsdImage::PlanesSize() const {
    const u64 pointers = SizeProduct(RowCount(), sizeof(u8*));
    const u64 wordPointers = SampleSize() == sizeof(u16) ? pointers : 0;
    return SizeSum(SizeProduct(RowCount(), m_nWidth, SampleSize()), pointers, wordPointers,
                   SizeProduct(m_nChannels, sizeof(u8**)));
}

bool PsdImage::AllocatePlanes() try {
    FreePlanes();
    LargeBlock::Require(PlanesSize());
    m_planeTable = LargeBlock::Allocate(SizeProduct(m_nChannels, sizeof(u8**)));
    m_rowPointers = LargeBlock::Allocate(SizeProduct(RowCount(), sizeof(u8*)));
    m_samples = LargeBlock::Allocate(SizeProduct(RowCount(), m_nWidth, SampleSize()));
    u8** const rows = reinterpret_cast<u8**>(m_rowPointers.Data());
    for (u64 row = 0; row < RowCount(); ++row) rows[row] = Samples() + row * m_nWidth * SampleSize();
    if (SampleSize() == sizeof(u16)) {
        m_wordPointers = LargeBlock::Allocate(SizeProduct(RowCount(), sizeof(u16*)));
        u16** const words = reinterpret_cast<u16**>(m_wordPointers.Data());
        for (u64 row = 0; row < RowCount(); ++row) words[row] = Words() + row * m_nWidth;
    }
    m_pppPlanes = reinterpret_cast<u8***>(m_planeTable.Data());
    for (u64 channel = 0; channel < m_nChannels; ++channel) m_pppPlanes[channel] = rows + channel * m_nHeight;
    return true;
} catch (const std::bad_alloc&) {
    FreePlanes();
    return false;
}

const u16* const* PsdImage::GetWords(u32 nChannel) const {
    if (!m_wordPointers || nChannel >= m_nChannels) return nullptr;
    return reinterpret_cast<u16**>(m_wordPointers.Data()) + u64{nChannel} * m_nHeight;
}

void PsdImage::FreePlanes() {
    m_pppPlanes = nullptr;
    m_planeTable = LargeBlock();
    m_rowPointers = LargeBlock();
    m_wordPointers = LargeBlock();
    m_samples = LargeBlock();
}
