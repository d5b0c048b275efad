#include "framework/qt/wnd/dc.h"

#include "framework/core/exception.h"
#include "framework/core/stretch.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cassert>
#include <utility>

bool CDC::CreateCompatibleDC(const CDC*) {
    m_pPainter = nullptr;
    return true;
}

HBITMAP CDC::SelectObject(HBITMAP hBitmap) {
    return std::exchange(m_hBitmap, hBitmap);
}

// On the screen both units are the logical pixel, and a page is drawn as if it were one.
void CDC::DPtoLP(CSize*) const {}

bool CDC::StretchBlt(int x, int y, int nWidth, int nHeight, const CDC* pSource, [[maybe_unused]] int xSource,
                     [[maybe_unused]] int ySource, int nSourceWidth, int nSourceHeight,
                     [[maybe_unused]] u32 nRasterOperation) {
    assert(xSource == 0 && ySource == 0 && nRasterOperation == SRCCOPY);
    if (nWidth <= 0 || nHeight <= 0 || nSourceWidth <= 0 || nSourceHeight <= 0) return false;
    const GdiBitmap& bitmap = *pSource->m_hBitmap;
    const StretchSizes sizes = {static_cast<u32>(nSourceWidth), static_cast<u32>(nSourceHeight),
                                static_cast<u32>(nWidth), static_cast<u32>(nHeight)};
    if (sizes.nSourceWidth > bitmap.nWidth || sizes.nSourceHeight > bitmap.nHeight) return false;

    const CRect part = {std::max(m_exposed.left - x, 0), std::max(m_exposed.top - y, 0),
                        std::min(m_exposed.right - x, nWidth), std::min(m_exposed.bottom - y, nHeight)};
    if (part.Width() <= 0 || part.Height() <= 0) return true;
    QImage pixels(part.Width(), part.Height(), QImage::Format_RGB32);
    if (pixels.isNull()) AfxThrowMemoryException();
    StretchExposed(bitmap, sizes, part, reinterpret_cast<u32*>(pixels.bits()),
                   static_cast<u64>(pixels.bytesPerLine()) / sizeof(u32));
    m_pPainter->drawImage(QPoint(x + part.left, y + part.top), pixels);
    return true;
}
