// The pictures of IFF documents: decoded row by row into a buffer of 24 bits a pixel.

#include "chunks/alph_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "display/block_decoder.h"
#include "display/dib_rows.h"
#include "display/display_image.h"
#include "display/ilbm_colours.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// Frees what a body needs for decoding, however the decoding ends.
class RowsInProgress {
  public:
    RowsInProgress(BodyChunk& body, const ReadingRules& rules) : m_body(body) { m_body.BeginRows(rules); }
    RowsInProgress(const RowsInProgress&) = delete;
    RowsInProgress& operator=(const RowsInProgress&) = delete;
    ~RowsInProgress() { m_body.EndRows(); }

  private:
    BodyChunk& m_body;
};

// An alpha picture narrower than the header leaves the rest of the row black.
void PackAlphaRow(u8* pOut, const u32* pValues, u32 nAlphaWidth, u32 nWidth) {
    const u32 shown = std::min(nAlphaWidth, nWidth);
    TheRowKernels().GreyValues(pOut, pValues, shown);
    std::fill(pOut + u64{shown} * 3, pOut + u64{nWidth} * 3, u8{0});
}

// The rows of a picture from nTop on.
void PackAlphaBands(const DibRows& rows, const S3tcBands& bands, u32 nTop, u32 nWidth) {
    const LargeBlock band = LargeBlock::Allocate(bands.BandSize());
    for (u32 top = 0; top < rows.Height(); top += S3TC_BAND_ROWS) {
        const u32 count = bands.Decode(nTop + top, band.Data());
        for (u32 y = 0; y < count; ++y)
            TheRowKernels().BgraAlpha(rows.Row(top + y), band.Data() + u64{y} * nWidth * 4, nWidth);
    }
}

}  // namespace

bool DisplayImage::BuildIffPicture(u32 nChannel, const ReadingRules& rules) {
    if (m_pBody) return BuildIlbm(*m_pBody, nChannel, rules);
    return m_pS3tc && BuildS3tc(*m_pS3tc, nChannel);
}

bool DisplayImage::BuildIlbm(BodyChunk& body, u32 nChannel, const ReadingRules& rules) {
    const auto* const header = dynamic_cast<const BmhdChunk*>(body.FindProperty(BmhdChunk::ID));
    PassedOver passedOver;
    const PixelKind kind = PixelKindOf(body, rules, passedOver);
    if (!header || kind == PixelKind::None) return false;
    const IlbmColours colours(body, kind);
    const bool isAlpha = nChannel != 0;
    BodyChunk* const source = isAlpha ? dynamic_cast<AlphChunk*>(body.FindProperty(AlphChunk::ID)) : &body;
    if (!source) return false;
    const u32 width = header->m_nWidth;
    const u32 height = header->m_nHeight;

    const RowsInProgress decoding(*source, rules);
    // Asked before the buffer is had: a few bytes of file can claim gigabytes of picture.
    if (!source->CanFillRows(height)) return false;
    const auto make = [&](const DibRows& rows, u32) {
        for (u32 y = 0; y < rows.Height(); ++y) {
            const u32* const values = source->DecodeRow();
            if (!values) return false;
            if (isAlpha)
                PackAlphaRow(rows.Row(y), values, source->m_nWidth, width);
            else if (!colours.PutRow(rows.Row(y), values, width))
                return false;
        }
        return true;
    };
    return MakeInBands(width, height, 24, BandRows(height), make, [&](DibRows rows, u32 nTop) {
        m_nWidth = width;
        m_nHeight = height;
        m_nColours = colours.Count();
        DeliverTrueColour(std::move(rows), nTop);
    });
}

bool DisplayImage::BuildS3tc(const S3tcChunk& chunk, u32 nChannel) {
    // Set before decoding: where that fails the frame is fitted all the same, and not to the picture before.
    m_nWidth = chunk.m_nWidth;
    m_nHeight = chunk.m_nHeight;
    m_nColours = 0;
    const S3tcBands bands(chunk);
    if (!bands.CanDecode()) return true;
    const auto make = [&](const DibRows& rows, u32 nTop) {
        if (nChannel == 0)
            for (u32 y = 0; y < rows.Height(); y += S3TC_BAND_ROWS)
                bands.PutColours(nTop + y, rows.Row(y), rows.Pitch());
        else
            PackAlphaBands(rows, bands, nTop, m_nWidth);
        return true;
    };
    return MakeInBands(m_nWidth, m_nHeight, 24, BandRows(m_nHeight), make,
                       [&](DibRows rows, u32 nTop) { DeliverTrueColour(std::move(rows), nTop); });
}
