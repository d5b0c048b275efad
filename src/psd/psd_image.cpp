#include "psd/psd_image.h"

#include "base/checked_size.h"

void PsdImage::Clear() {
    m_pPalette.reset();
    FreePlanes();
    m_Resources.RemoveAll();
    m_Layers.RemoveAll();
    m_GlobalMasks.RemoveAll();
}

bool PsdImage::AllocatePlanes() {
    FreePlanes();
    const u64 rowSize = SizeProduct(m_nWidth, SampleSize());
    m_planeTable = LargeBlock::Try(SizeProduct(m_nChannels, sizeof(u8**)));
    m_rowPointers = LargeBlock::Try(SizeProduct(RowCount(), sizeof(u8*)));
    m_samples = LargeBlock::Try(SizeProduct(RowCount(), rowSize));
    if (!m_planeTable || !m_rowPointers || !m_samples) {
        FreePlanes();
        return false;
    }
    u8** const rows = reinterpret_cast<u8**>(m_rowPointers.Data());
    for (u64 row = 0; row < RowCount(); ++row) rows[row] = m_samples.Data() + row * rowSize;
    m_pppPlanes = reinterpret_cast<u8***>(m_planeTable.Data());
    for (u64 channel = 0; channel < m_nChannels; ++channel) m_pppPlanes[channel] = rows + channel * m_nHeight;
    return true;
}

void PsdImage::FreePlanes() {
    m_pppPlanes = nullptr;
    m_planeTable = LargeBlock();
    m_rowPointers = LargeBlock();
    m_samples = LargeBlock();
}
