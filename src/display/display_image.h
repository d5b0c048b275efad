// The picture on show and every operation that makes it: choosing, building, converting. It is the half of
// the view that needs no window; the positions chosen in the two lists come in, names and a bitmap go out.
#pragma once

#include "base/types.h"
#include "chunks/body_chunk.h"
#include "chunks/extension_chunks.h"
#include "framework/core/gdi_bitmap.h"

#include <string>
#include <vector>

class CVistrelDoc;
class PsdImage;
class PsdLayer;
class DibRows;
struct PsdSize;

// One pointer for each picture row, top row first, to that row's samples: bytes, or native 16-bit words.
using RowTable8 = const u8* const*;
using RowTable16 = const u16* const*;

// What is chosen in the two lists, by position: layer 0 is the whole image, channel 0 the composite.
struct Selection {
    u32 nLayer = 0;
    u32 nChannel = 0;
};

// Whoever wants pictures band by band, where one as a whole would take memory and time for nothing.
class BandTaker {
  public:
    virtual ~BandTaker() = default;

    // Rows of a picture of so many, from nTop on; they come from the top down. The band is borrowed for the
    // call.
    virtual void Take(const GdiBitmap& band, u32 nTop, u32 nHeight) = 0;
};

class DisplayImage {
  public:
    DisplayImage() = default;
    DisplayImage(const DisplayImage&) = delete;
    DisplayImage& operator=(const DisplayImage&) = delete;
    virtual ~DisplayImage();

    // Makes the picture choice for a position in the Layer list, and names the entries of the Channel list.
    std::vector<std::string> ChooseLayer(const CVistrelDoc& document, u32 nLayer);

    // Makes the bitmap for a selection whose layer has been chosen. m_bValid is cleared where it cannot give
    // a picture. When memory cannot be had, the exception leaves no bitmap behind and m_bValid cleared.
    void BuildBitmap(const CVistrelDoc& document, const Selection& selection);

    // Each makes m_hBitmap from planes of m_nWidth by m_nHeight samples and frees nothing before it. The
    // planes of a colour picture may be null, each by itself; a null grey or index plane leaves m_hBitmap as
    // it is. Palettes are triplets of red, green and blue, nCount of them, at most 256; without any (null, 0)
    // indices show as shades of grey. Depths of one bit come one byte for each sample. The largest CMYK
    // sample means no ink.
    void ConvertGrey8(RowTable8 ppGrey);
    void ConvertGrey1(RowTable8 ppGrey);
    void ConvertGrey16(RowTable16 ppGrey);
    void ConvertIndexed8(RowTable8 ppIndex, const u8* pTriplets, u32 nCount);
    void ConvertIndexed1(RowTable8 ppIndex, const u8* pTriplets, u32 nCount);
    void ConvertIndexed16(RowTable16 ppIndex, const u8* pTriplets, u32 nCount);
    void ConvertRgb8(RowTable8 ppRed, RowTable8 ppGreen, RowTable8 ppBlue);
    void ConvertRgb1(RowTable8 ppRed, RowTable8 ppGreen, RowTable8 ppBlue);
    void ConvertRgb16(RowTable16 ppRed, RowTable16 ppGreen, RowTable16 ppBlue);
    void ConvertCmyk8(RowTable8 ppCyan, RowTable8 ppMagenta, RowTable8 ppYellow, RowTable8 ppBlack);
    void ConvertCmyk1(RowTable8 ppCyan, RowTable8 ppMagenta, RowTable8 ppYellow, RowTable8 ppBlack);
    void ConvertCmyk16(RowTable16 ppCyan, RowTable16 ppMagenta, RowTable16 ppYellow, RowTable16 ppBlack);

    // Completes the header (the caller has set biBitCount, biClrUsed and the colour table) and makes the
    // bitmap, which takes the bits over.
    void CreateDisplayBitmap(BITMAPINFO& info, LargeBlock bits);

    // From now on pictures go to the taker, which is borrowed, and no bitmap is made. One that turns out to
    // be none halfway stops there.
    void HandTo(BandTaker* pTaker) { m_pTaker = pTaker; }

    // The picture, and what a layer's picture is made of, need memory no longer; until a layer is chosen and
    // its picture made there is neither.
    void LetGo();

    // Text of the information pane: width, height and colours, or "<invalid bitmap>".
    std::string InfoText() const;

    HBITMAP m_hBitmap = nullptr;  // owned
    u32 m_bValid = 0;
    u32 m_nWidth = 0;               // pixels
    u32 m_nHeight = 0;              // rows
    u32 m_nColours = 0;             // palette entries; 0 for a true-colour picture
    CountedPtr<BodyChunk> m_pBody;  // the picture chunk chosen for the layer; at most one of the two is set
    CountedPtr<S3tcChunk> m_pS3tc;
    float m_fScale = 1.0f;  // of the last fit

  private:
    void DiscardBitmap();
    void ForgetLayer();

    // How many rows of a picture are made at a time: all of them, unless they are handed to somebody.
    u32 BandRows(u32 nHeight) const;
    // Makes the bitmap of a picture's rows from nTop on, or hands them over. Its size, the colour table and
    // biClrUsed are set.
    void Deliver(BITMAPINFO& info, DibRows rows, u32 nTop);
    void DeliverTrueColour(DibRows rows, u32 nTop);

    // Each answers whether the selection can give a picture at all.
    bool BuildIffPicture(u32 nChannel, const ReadingRules& rules);
    bool BuildIlbm(BodyChunk& body, u32 nChannel, const ReadingRules& rules);
    bool BuildS3tc(const S3tcChunk& chunk, u32 nChannel);
    bool BuildPsdPicture(const PsdImage& psd, const Selection& selection, const ReadingRules& rules);

    void ConvertWholePsd(const PsdImage& psd, u32 nChannel);
    void ConvertPsdComposite(const PsdImage& psd);
    void ConvertPsdGrey(const PsdImage& psd, u32 nPlane);
    void ConvertPsdIndexed(const PsdImage& psd);
    void ConvertPsdRgb(const PsdImage& psd);
    void ConvertPsdCmyk(const PsdImage& psd);
    void ConvertPsdLayer(const PsdLayer& layer, u32 nMode);
    void SetSize(const PsdSize& size);

    void CopyRows8(BITMAPINFO& info, RowTable8 ppRows);
    void CopyRows1(BITMAPINFO& info, RowTable8 ppRows);
    void CopyRowsHigh16(BITMAPINFO& info, RowTable16 ppRows);
    void CopyRowsLow16(BITMAPINFO& info, RowTable16 ppRows);
    void FillGreyPalette(BITMAPINFO& info, u32 nCount);
    void FillPaletteFromRgb(BITMAPINFO& info, const u8* pTriplets, u32 nCount);

    template <typename PackRow>
    void PackRows(BITMAPINFO& info, u16 nBitCount, PackRow packRow);
    template <typename PackRow>
    void PackRows24(PackRow packRow);

    BandTaker* m_pTaker = nullptr;  // borrowed; null where bitmaps are made
};
