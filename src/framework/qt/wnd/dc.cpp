#include "framework/qt/wnd/dc.h"

#include "framework/core/exception.h"
#include "framework/core/stretch.h"

#include <QImage>
#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>

#include <algorithm>
#include <cassert>
#include <cmath>
#include <utility>

namespace {

constexpr int BAND_PIXELS = 64 * 1024;  // 256 KiB, which a cache holds

// A page is handed over whole: rows of pictures one below the other would show seams once it is magnified. So
// they would where the pixels of a window are no whole ones of the screen.
bool DrawsInBands(const QPainter& painter) {
    return painter.paintEngine()->type() == QPaintEngine::Raster && AfxHasWholePixels(*painter.device());
}

}  // namespace

bool AfxHasWholePixels(const QPaintDevice& device) {
    const double ratio = device.devicePixelRatioF();
    return ratio == std::floor(ratio);
}

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
    const int height = part.Height();
    const int bandHeight =
        DrawsInBands(*m_pPainter) ? std::clamp(BAND_PIXELS / part.Width(), 1, height) : height;
    QImage pixels(part.Width(), bandHeight, QImage::Format_RGB32);
    if (pixels.isNull()) AfxThrowMemoryException();
    for (int top = part.top; top < part.bottom; top += bandHeight) {
        const CRect band = {part.left, top, part.right, std::min(top + bandHeight, part.bottom)};
        StretchExposed(bitmap, sizes, band, reinterpret_cast<u32*>(pixels.bits()),
                       static_cast<u64>(pixels.bytesPerLine()) / sizeof(u32));
        m_pPainter->drawImage(QPoint(x + band.left, y + band.top), pixels,
                              QRect(0, 0, band.Width(), band.Height()));
    }
    return true;
}
