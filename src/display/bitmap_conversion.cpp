#include "display/block_decoder.h"
#include "display/dib_rows.h"
#include "display/display_image.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace {

// The rows of a plane that may be absent: then every row is the same one of constant samples.
template <typename Sample>
class PlaneRows {
  public:
    PlaneRows(const Sample* const* ppRows, u32 nWidth, Sample absent) : m_ppRows(ppRows) {
        if (ppRows) return;
        m_absent = LargeBlock::Allocate(SizeProduct(nWidth, sizeof(Sample)));
        std::fill_n(AbsentRow(), nWidth, absent);
    }

    const Sample* operator[](u32 nRow) const { return m_ppRows ? m_ppRows[nRow] : AbsentRow(); }

  private:
    const Sample* const* m_ppRows;
    Sample* AbsentRow() const { return reinterpret_cast<Sample*>(m_absent.Data()); }

    LargeBlock m_absent;
};

// Few enough to stay in the cache until somebody has taken them. Blocks are decoded in bands that divide it.
constexpr u32 HANDED_ROWS = 16;
static_assert(HANDED_ROWS % S3TC_BAND_ROWS == 0);

HBITMAP MakeBitmap(BITMAPINFO& info, u32 nWidth, u32 nHeight, LargeBlock bits) {
    BITMAPINFOHEADER& header = info.bmiHeader;
    header.biSize = sizeof(BITMAPINFOHEADER);
    header.biWidth = static_cast<i32>(nWidth);
    header.biHeight = static_cast<i32>(nHeight);
    header.biPlanes = 1;
    header.biCompression = BI_RGB;
    header.biSizeImage = 0;
    header.biXPelsPerMeter = 1024;
    header.biYPelsPerMeter = 1024;
    header.biClrImportant = header.biClrUsed;
    return CreateDIBitmap(nullptr, &header, CBM_INIT, std::move(bits), &info, DIB_RGB_COLORS);
}

}  // namespace

void DisplayImage::CreateDisplayBitmap(BITMAPINFO& info, LargeBlock bits) {
    m_hBitmap = MakeBitmap(info, m_nWidth, m_nHeight, std::move(bits));
}

u32 DisplayImage::BandRows(u32 nHeight) const {
    return m_pTaker ? std::min(HANDED_ROWS, nHeight) : nHeight;
}

void DisplayImage::Deliver(BITMAPINFO& info, DibRows rows, u32 nTop) {
    info.bmiHeader.biBitCount = static_cast<u16>(rows.BitCount());
    if (!m_pTaker) {
        CreateDisplayBitmap(info, rows.TakeBits());
        return;
    }
    const std::unique_ptr<GdiBitmap, void (*)(HBITMAP)> band(
        MakeBitmap(info, rows.Width(), rows.Height(), rows.TakeBits()), DeleteObject);
    if (band) m_pTaker->Take(*band, nTop, m_nHeight);
}

void DisplayImage::DeliverTrueColour(DibRows rows, u32 nTop) {
    BITMAPINFO info;
    info.bmiHeader.biClrUsed = 0;
    Deliver(info, std::move(rows), nTop);
}

void DisplayImage::FillGreyPalette(BITMAPINFO& info, u32 nCount) {
    for (u32 i = 0; i < nCount; ++i) {
        const u8 grey = static_cast<u8>(i * 255 / (nCount - 1));
        info.bmiColors[i] = {grey, grey, grey, 0};
    }
    info.bmiHeader.biClrUsed = nCount;
}

void DisplayImage::FillPaletteFromRgb(BITMAPINFO& info, const u8* pTriplets, u32 nCount) {
    for (u32 i = 0; i < nCount; ++i, pTriplets += 3)
        info.bmiColors[i] = {pTriplets[2], pTriplets[1], pTriplets[0], 0};
    info.bmiHeader.biClrUsed = nCount;
}

// packRow(out, y) fills the buffer row of picture row y.
template <typename PackRow>
void DisplayImage::PackRows(BITMAPINFO& info, u16 nBitCount, PackRow packRow) {
    const auto make = [&](const DibRows& rows, u32 nTop) {
        for (u32 y = 0; y < rows.Height(); ++y) packRow(rows.Row(y), nTop + y);
        return true;
    };
    MakeInBands(m_nWidth, m_nHeight, nBitCount, BandRows(m_nHeight), make,
                [&](DibRows rows, u32 nTop) { Deliver(info, std::move(rows), nTop); });
}

template <typename PackRow>
void DisplayImage::PackRows24(PackRow packRow) {
    BITMAPINFO info;
    info.bmiHeader.biClrUsed = 0;
    PackRows(info, 24, packRow);
}

void DisplayImage::CopyRows8(BITMAPINFO& info, RowTable8 ppRows) {
    PackRows(info, 8, [&](u8* out, u32 y) { std::memcpy(out, ppRows[y], m_nWidth); });
}

void DisplayImage::CopyRows1(BITMAPINFO& info, RowTable8 ppRows) {
    CopyRows8(info, ppRows);
}

void DisplayImage::CopyRowsHigh16(BITMAPINFO& info, RowTable16 ppRows) {
    PackRows(info, 8, [&](u8* out, u32 y) { TheRowKernels().HighBytes(out, ppRows[y], m_nWidth); });
}

void DisplayImage::CopyRowsLow16(BITMAPINFO& info, RowTable16 ppRows) {
    PackRows(info, 8, [&](u8* out, u32 y) { TheRowKernels().LowBytes(out, ppRows[y], m_nWidth); });
}

void DisplayImage::ConvertGrey8(RowTable8 ppGrey) {
    if (!ppGrey) return;
    BITMAPINFO info;
    FillGreyPalette(info, 256);
    CopyRows8(info, ppGrey);
}

void DisplayImage::ConvertGrey1(RowTable8 ppGrey) {
    if (!ppGrey) return;
    BITMAPINFO info;
    FillGreyPalette(info, 2);
    CopyRows1(info, ppGrey);
}

void DisplayImage::ConvertGrey16(RowTable16 ppGrey) {
    if (!ppGrey) return;
    BITMAPINFO info;
    FillGreyPalette(info, 256);
    CopyRowsHigh16(info, ppGrey);
}

void DisplayImage::ConvertIndexed8(RowTable8 ppIndex, const u8* pTriplets, u32 nCount) {
    if (!ppIndex) return;
    BITMAPINFO info;
    FillPaletteFromRgb(info, pTriplets, nCount);
    CopyRows8(info, ppIndex);
}

void DisplayImage::ConvertIndexed1(RowTable8 ppIndex, const u8* pTriplets, u32 nCount) {
    if (!ppIndex) return;
    BITMAPINFO info;
    FillPaletteFromRgb(info, pTriplets, nCount);
    CopyRows1(info, ppIndex);
}

void DisplayImage::ConvertIndexed16(RowTable16 ppIndex, const u8* pTriplets, u32 nCount) {
    if (!ppIndex) return;
    BITMAPINFO info;
    FillPaletteFromRgb(info, pTriplets, nCount);
    CopyRowsLow16(info, ppIndex);
}

void DisplayImage::ConvertRgb8(RowTable8 ppRed, RowTable8 ppGreen, RowTable8 ppBlue) {
    const PlaneRows<u8> red(ppRed, m_nWidth, 0), green(ppGreen, m_nWidth, 0), blue(ppBlue, m_nWidth, 0);
    PackRows24([&](u8* pOut, u32 nRow) {
        TheRowKernels().Rgb8(pOut, red[nRow], green[nRow], blue[nRow], m_nWidth);
    });
}

void DisplayImage::ConvertRgb1(RowTable8 ppRed, RowTable8 ppGreen, RowTable8 ppBlue) {
    ConvertRgb8(ppRed, ppGreen, ppBlue);
}

void DisplayImage::ConvertRgb16(RowTable16 ppRed, RowTable16 ppGreen, RowTable16 ppBlue) {
    const PlaneRows<u16> red(ppRed, m_nWidth, 0), green(ppGreen, m_nWidth, 0), blue(ppBlue, m_nWidth, 0);
    PackRows24([&](u8* pOut, u32 nRow) {
        TheRowKernels().Rgb16(pOut, red[nRow], green[nRow], blue[nRow], m_nWidth);
    });
}

void DisplayImage::ConvertCmyk8(RowTable8 ppCyan, RowTable8 ppMagenta, RowTable8 ppYellow,
                                RowTable8 ppBlack) {
    const PlaneRows<u8> cyan(ppCyan, m_nWidth, 255), magenta(ppMagenta, m_nWidth, 255);
    const PlaneRows<u8> yellow(ppYellow, m_nWidth, 255), black(ppBlack, m_nWidth, 255);
    PackRows24([&](u8* pOut, u32 nRow) {
        TheRowKernels().Cmyk8(pOut, cyan[nRow], magenta[nRow], yellow[nRow], black[nRow], m_nWidth);
    });
}

void DisplayImage::ConvertCmyk1(RowTable8 ppCyan, RowTable8 ppMagenta, RowTable8 ppYellow,
                                RowTable8 ppBlack) {
    ConvertCmyk8(ppCyan, ppMagenta, ppYellow, ppBlack);
}

void DisplayImage::ConvertCmyk16(RowTable16 ppCyan, RowTable16 ppMagenta, RowTable16 ppYellow,
                                 RowTable16 ppBlack) {
    const PlaneRows<u16> cyan(ppCyan, m_nWidth, 65535), magenta(ppMagenta, m_nWidth, 65535);
    const PlaneRows<u16> yellow(ppYellow, m_nWidth, 65535), black(ppBlack, m_nWidth, 65535);
    PackRows24([&](u8* pOut, u32 nRow) {
        TheRowKernels().Cmyk16(pOut, cyan[nRow], magenta[nRow], yellow[nRow], black[nRow], m_nWidth);
    });
}
