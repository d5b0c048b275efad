#include "display/shrink.h"

#include "base/checked_size.h"
#include "framework/core/gdi_bitmap.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <bit>

namespace {

// How a row of source pixels lies in memory: bytes from one to the next, and where in each the colours are.
struct PixelLayout {
    u32 nStep;
    u32 nRed;
    u32 nGreen;
    u32 nBlue;
};

constexpr PixelLayout GREY_BYTES = {1, 0, 0, 0};
constexpr PixelLayout BGR_BYTES = {3, 2, 1, 0};
constexpr PixelLayout WORDS =
    std::endian::native == std::endian::little ? PixelLayout{4, 2, 1, 0} : PixelLayout{4, 1, 2, 3};

bool IsGreyRamp(const GdiBitmap& bitmap) {
    for (u32 i = 0; i < 256; ++i)
        if ((bitmap.colours[i] & 0xFFFFFF) != i * 0x010101) return false;
    return true;
}

// The layout that rows of the bitmap are brought into with the least effort.
const PixelLayout& LayoutOf(const GdiBitmap& bitmap) {
    if (bitmap.header.biBitCount != 8) return BGR_BYTES;
    return IsGreyRamp(bitmap) ? GREY_BYTES : WORDS;
}

}  // namespace

// Sums of rows, byte by byte. Most rows count whole: these are added up in half the width first.
class RowSums {
  public:
    // nWhole: the weight of a row that counts whole.
    RowSums(u32 nWidth, const PixelLayout& layout, u32 nWhole)
        : m_layout(layout),
          m_nBytes(nWidth * layout.nStep),
          m_nWhole(nWhole),
          m_words(LargeBlock::Allocate(layout.nStep == WORDS.nStep ? SizeProduct(nWidth, sizeof(u32)) : 0)),
          m_sums(LargeBlock::Allocate(SizeProduct(m_nBytes, sizeof(u32)))),
          m_wholes(LargeBlock::Allocate(SizeProduct(m_nBytes, sizeof(u16)))) {
        std::fill_n(Wholes(), m_nBytes, u16{0});
        Clear();
    }

    const PixelLayout& Layout() const { return m_layout; }

    // A row of a bitmap in that layout. Lasts until the next one is asked for.
    const u8* RowOf(const GdiBitmap& bitmap, u32 y) const {
        if (m_words.Size() == 0) return bitmap.Row(y);
        bitmap.ReadPixels(y, 0, bitmap.nWidth, reinterpret_cast<u32*>(m_words.Data()));
        return m_words.Data();
    }

    void Add(const u8* pRow, u32 nWeight) {
        if (nWeight != m_nWhole) {
            AddPart(pRow, nWeight);
            return;
        }
        if (m_nWaiting == MOST_WAITING) AddWaiting();
        TheRowKernels().AddBytes(Wholes(), pRow, m_nBytes);
        ++m_nWaiting;
    }

    // Each sum of bytes times their weights since the last call of Clear, which follows.
    const u32* Finish() {
        AddWaiting();
        return Sums();
    }

    void Clear() { std::fill_n(Sums(), m_nBytes, u32{0}); }

  private:
    static constexpr u32 MOST_WAITING = 257;  // as many times 255 fit into 16 bits

    void AddPart(const u8* pRow, u32 nWeight) {
        u32* const sums = Sums();
        for (u32 i = 0; i < m_nBytes; ++i) sums[i] += nWeight * pRow[i];
    }

    void AddWaiting() {
        if (m_nWaiting == 0) return;
        u32* const sums = Sums();
        u16* const wholes = Wholes();
        for (u32 i = 0; i < m_nBytes; ++i) sums[i] += m_nWhole * wholes[i];
        std::fill_n(wholes, m_nBytes, u16{0});
        m_nWaiting = 0;
    }

    u32* Sums() const { return reinterpret_cast<u32*>(m_sums.Data()); }
    u16* Wholes() const { return reinterpret_cast<u16*>(m_wholes.Data()); }

    const PixelLayout m_layout;
    const u32 m_nBytes;
    const u32 m_nWhole;
    u32 m_nWaiting = 0;  // rows in m_wholes
    LargeBlock m_words;  // a row of an indexed bitmap
    LargeBlock m_sums;
    LargeBlock m_wholes;
};

namespace {

constexpr double HALF = 0.5;  // sums are never negative

struct ColourSums {
    template <PixelLayout LAYOUT>
    void Add(const u32* pPixel, u64 nWeight) {
        nRed += nWeight * pPixel[LAYOUT.nRed];
        nGreen += nWeight * pPixel[LAYOUT.nGreen];
        nBlue += nWeight * pPixel[LAYOUT.nBlue];
    }

    u64 nRed = 0;
    u64 nGreen = 0;
    u64 nBlue = 0;
};

// Means of columns as wide as nSourceWidth, where those of the source are as wide as nWidth. pSums are of
// rows, and become means of pixels times fScale.
template <PixelLayout LAYOUT>
void ShrinkRow(const u32* pSums, u32 nSourceWidth, u32 nWidth, double fScale, u8* pOut) {
    // Sums are whole numbers: a part of one decides what is exactly between two means and nothing else.
    const double rounding = HALF + fScale / 4;
    const auto mean = [fScale, rounding](u64 nSum) {
        return static_cast<u8>(static_cast<double>(nSum) * fScale + rounding);
    };
    u32 left = nWidth;  // of the source column that was come to
    for (u32 x = 0; x < nWidth; ++x) {
        ColourSums colours;
        u32 missing = nSourceWidth;
        if (left < nWidth) {
            colours.Add<LAYOUT>(pSums, left);
            pSums += LAYOUT.nStep;
            missing -= left;
        }
        ColourSums wholes;
        for (; missing >= nWidth; missing -= nWidth) {
            wholes.Add<LAYOUT>(pSums, 1);
            pSums += LAYOUT.nStep;
        }
        if (missing > 0) colours.Add<LAYOUT>(pSums, missing);
        left = nWidth - missing;
        *pOut++ = mean(colours.nRed + nWidth * wholes.nRed);
        *pOut++ = mean(colours.nGreen + nWidth * wholes.nGreen);
        *pOut++ = mean(colours.nBlue + nWidth * wholes.nBlue);
    }
}

using RowShrinker = void (*)(const u32* pSums, u32 nSourceWidth, u32 nWidth, double fScale, u8* pOut);

RowShrinker ShrinkerOf(const PixelLayout& layout) {
    switch (layout.nStep) {
        case GREY_BYTES.nStep:
            return ShrinkRow<GREY_BYTES>;
        case BGR_BYTES.nStep:
            return ShrinkRow<BGR_BYTES>;
        default:
            return ShrinkRow<WORDS>;
    }
}

u32 Fraction(u32 nSide, u32 nMost, u32 nLongest) {
    const u64 rounded = (u64{nSide} * nMost + nLongest / 2) / nLongest;
    return static_cast<u32>(std::max<u64>(rounded, 1));
}

}  // namespace

SideLengths FitInto(const SideLengths& sides, u32 nMost) {
    const u32 longest = std::max(sides.nWidth, sides.nHeight);
    if (longest <= nMost) return sides;
    return {Fraction(sides.nWidth, nMost, longest), Fraction(sides.nHeight, nMost, longest)};
}

Shrinker::Shrinker(u32 nMostSide) : m_nMostSide(nMostSide) {}

Shrinker::~Shrinker() = default;

void Shrinker::Begin(const GdiBitmap& band, u32 nHeight) {
    m_nTaken = 0;
    m_nDone = 0;
    m_picture = {band.nWidth, nHeight};
    m_sides = FitInto(m_picture, m_nMostSide);
    m_pixels = LargeBlock::Allocate(SizeProduct(m_sides.nHeight, m_sides.nWidth, 3));
    m_pSums = std::make_unique<RowSums>(band.nWidth, LayoutOf(band), m_sides.nHeight);
}

void Shrinker::Take(const GdiBitmap& band, u32 nTop, u32 nHeight) {
    if (nTop == 0) Begin(band, nHeight);
    for (u32 y = 0; y < band.nHeight; ++y) TakeRow(m_pSums->RowOf(band, y));
}

// A row of the picture is as high as the other has rows, and the other way round.
void Shrinker::TakeRow(const u8* pRow) {
    u64 at = u64{m_nTaken} * m_sides.nHeight;
    const u64 end = at + m_sides.nHeight;
    while (at < end) {
        const u64 border = (u64{m_nDone} + 1) * m_picture.nHeight;
        const u64 next = std::min(end, border);
        m_pSums->Add(pRow, static_cast<u32>(next - at));
        at = next;
        if (at == border) FinishRow();
    }
    ++m_nTaken;
}

void Shrinker::FinishRow() {
    const double scale =
        1.0 / (static_cast<double>(m_picture.nWidth) * static_cast<double>(m_picture.nHeight));
    const RowShrinker shrinkRow = ShrinkerOf(m_pSums->Layout());
    shrinkRow(m_pSums->Finish(), m_picture.nWidth, m_sides.nWidth, scale,
              m_pixels.Data() + u64{m_nDone} * m_sides.nWidth * 3);
    m_pSums->Clear();
    ++m_nDone;
}
