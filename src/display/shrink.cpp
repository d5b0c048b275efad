#include "display/shrink.h"

#include "base/checked_size.h"
#include "framework/core/gdi_bitmap.h"

#include <algorithm>
#include <bit>
#include <cassert>

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

// The rows of a bitmap, in the layout that takes the least to bring them into.
class SourceRows {
  public:
    explicit SourceRows(const GdiBitmap& bitmap) : m_bitmap(bitmap) {
        if (bitmap.header.biBitCount != 8) return;
        if (IsGreyRamp(bitmap)) {
            m_layout = GREY_BYTES;
            return;
        }
        m_layout = WORDS;
        m_words = LargeBlock::Allocate(SizeProduct(bitmap.nWidth, sizeof(u32)));
    }

    const PixelLayout& Layout() const { return m_layout; }

    // Lasts until the next one is asked for.
    const u8* Row(u32 y) const {
        if (!m_words) return m_bitmap.Row(y);
        m_bitmap.ReadPixels(y, 0, m_bitmap.nWidth, reinterpret_cast<u32*>(m_words.Data()));
        return m_words.Data();
    }

  private:
    const GdiBitmap& m_bitmap;
    PixelLayout m_layout = BGR_BYTES;
    LargeBlock m_words;
};

// Sums of rows, byte by byte. Most rows count whole: these are added up in half the width first.
class RowSums {
  public:
    RowSums(u32 nBytes, u32 nWhole)
        : m_nBytes(nBytes),
          m_nWhole(nWhole),
          m_sums(LargeBlock::Allocate(SizeProduct(nBytes, sizeof(u32)))),
          m_wholes(LargeBlock::Allocate(SizeProduct(nBytes, sizeof(u16)))) {
        Clear();
    }

    void Add(const u8* pRow, u32 nWeight) {
        if (nWeight != m_nWhole) {
            AddPart(pRow, nWeight);
            return;
        }
        if (m_nWaiting == MOST_WAITING) AddWaiting();
        u16* const wholes = Wholes();
        for (u32 i = 0; i < m_nBytes; ++i) wholes[i] = static_cast<u16>(wholes[i] + pRow[i]);
        ++m_nWaiting;
    }

    // Each sum of bytes times their weights since the last call of Clear.
    const u32* Finish() {
        AddWaiting();
        return Sums();
    }

    void Clear() {
        std::fill_n(Sums(), m_nBytes, u32{0});
        std::fill_n(Wholes(), m_nBytes, u16{0});
        m_nWaiting = 0;
    }

  private:
    static constexpr u32 MOST_WAITING = 257;  // as many times 255 fit into 16 bits

    void AddPart(const u8* pRow, u32 nWeight) {
        u32* const sums = Sums();
        for (u32 i = 0; i < m_nBytes; ++i) sums[i] += nWeight * pRow[i];
    }

    void AddWaiting() {
        u32* const sums = Sums();
        u16* const wholes = Wholes();
        for (u32 i = 0; i < m_nBytes; ++i) sums[i] += m_nWhole * wholes[i];
        std::fill_n(wholes, m_nBytes, u16{0});
        m_nWaiting = 0;
    }

    u32* Sums() const { return reinterpret_cast<u32*>(m_sums.Data()); }
    u16* Wholes() const { return reinterpret_cast<u16*>(m_wholes.Data()); }

    const u32 m_nBytes;
    const u32 m_nWhole;  // the weight of a row that counts whole
    u32 m_nWaiting = 0;  // rows in m_wholes
    LargeBlock m_sums;
    LargeBlock m_wholes;
};

// Calls take(source, weight) for each of nSource places that destination place nPlace of nDest covers. A
// source place that is covered whole weighs nDest, and all together nSource.
template <typename Take>
void ForEachCovered(u32 nPlace, u32 nSource, u32 nDest, const Take& take) {
    u64 at = u64{nPlace} * nSource;
    const u64 end = at + nSource;
    while (at < end) {
        const u64 source = at / nDest;
        const u64 next = std::min((source + 1) * nDest, end);
        take(static_cast<u32>(source), static_cast<u32>(next - at));
        at = next;
    }
}

struct ColourSums {
    u64 nRed = 0;
    u64 nGreen = 0;
    u64 nBlue = 0;
};

void ShrinkRow(const u32* pSums, const PixelLayout& layout, u32 nSourceWidth, u32 nWidth, double fScale,
               u8* pOut) {
    const auto mean = [fScale](u64 nSum) {
        return static_cast<u8>(static_cast<double>(nSum) * fScale + 0.5);
    };
    for (u32 x = 0; x < nWidth; ++x) {
        ColourSums colours;
        ForEachCovered(x, nSourceWidth, nWidth, [&](u32 nColumn, u32 nWeight) {
            const u32* const pixel = pSums + u64{nColumn} * layout.nStep;
            colours.nRed += u64{nWeight} * pixel[layout.nRed];
            colours.nGreen += u64{nWeight} * pixel[layout.nGreen];
            colours.nBlue += u64{nWeight} * pixel[layout.nBlue];
        });
        *pOut++ = mean(colours.nRed);
        *pOut++ = mean(colours.nGreen);
        *pOut++ = mean(colours.nBlue);
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

LargeBlock Shrink(const GdiBitmap& bitmap, const SideLengths& sides) {
    assert(sides.nWidth > 0 && sides.nWidth <= bitmap.nWidth);
    assert(sides.nHeight > 0 && sides.nHeight <= bitmap.nHeight);
    const u64 rowSize = u64{sides.nWidth} * 3;
    LargeBlock shrunk = LargeBlock::Allocate(SizeProduct(sides.nHeight, rowSize));
    const SourceRows source(bitmap);
    RowSums sums(bitmap.nWidth * source.Layout().nStep, sides.nHeight);
    const double scale = 1.0 / (static_cast<double>(bitmap.nWidth) * static_cast<double>(bitmap.nHeight));
    for (u32 y = 0; y < sides.nHeight; ++y) {
        ForEachCovered(y, bitmap.nHeight, sides.nHeight,
                       [&](u32 nRow, u32 nWeight) { sums.Add(source.Row(nRow), nWeight); });
        ShrinkRow(sums.Finish(), source.Layout(), bitmap.nWidth, sides.nWidth, scale,
                  shrunk.Data() + y * rowSize);
        sums.Clear();
    }
    return shrunk;
}
