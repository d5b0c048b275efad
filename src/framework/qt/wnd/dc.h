// Device contexts: what OnDraw draws on, and the one in memory that a bitmap is drawn from.
#pragma once

#include "base/types.h"
#include "framework/core/gdi_bitmap.h"
#include "framework/core/geometry.h"

class QPaintDevice;
class QPainter;

constexpr u32 SRCCOPY = 0x00CC0020;

// Whether every pixel drawn on covers whole ones of the screen.
bool AfxHasWholePixels(const QPaintDevice& device);

class CDC {
  public:
    CDC() = default;

    // The context of a window while it is painted, or of a page. The painter is borrowed; exposed is the
    // part, in the units drawn in, outside which nothing shows.
    CDC(QPainter* pPainter, const CRect& exposed) : m_pPainter(pPainter), m_exposed(exposed) {}

    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // Makes this a context in memory with the units of the other one.
    bool CreateCompatibleDC(const CDC* pDC);

    // Borrows the bitmap and returns the one selected before.
    HBITMAP SelectObject(HBITMAP hBitmap);

    // A size in pixels of the device, converted to the units drawn in.
    void DPtoLP(CSize* pSize) const;

    // Stretches the source's bitmap, from its top left corner on, over a rectangle of this context; only the
    // exposed part is computed. False, and nothing is drawn, where either size is empty or the source goes
    // beyond its bitmap.
    bool StretchBlt(int x, int y, int nWidth, int nHeight, const CDC* pSource, int xSource, int ySource,
                    int nSourceWidth, int nSourceHeight, u32 nRasterOperation);

  private:
    QPainter* m_pPainter = nullptr;  // null in a context in memory
    CRect m_exposed;
    HBITMAP m_hBitmap = nullptr;
};
