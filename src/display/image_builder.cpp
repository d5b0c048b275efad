#include "base/checked_size.h"
#include "chunks/ilbm_chunks.h"
#include "display/display_image.h"
#include "display/row_packing.h"
#include "framework/core/exception.h"

namespace {

// Frees what a body needs for decoding, however the decoding ends.
class RowsInProgress {
  public:
    explicit RowsInProgress(BodyChunk& body) : m_body(body) { m_body.BeginRows(); }
    RowsInProgress(const RowsInProgress&) = delete;
    RowsInProgress& operator=(const RowsInProgress&) = delete;
    ~RowsInProgress() { m_body.EndRows(); }

  private:
    BodyChunk& m_body;
};

}  // namespace

bool DisplayImage::BuildIffPicture(u32 nChannel) {
    return m_pBody && nChannel == 0 && BuildIlbm(*m_pBody);
}

// False where the data ends early or a value has no entry in the colour map.
bool DisplayImage::BuildIlbm(BodyChunk& body) {
    const auto* const map = dynamic_cast<const CmapChunk*>(body.FindProperty(CmapChunk::ID));
    const auto* const header = dynamic_cast<const BmhdChunk*>(body.FindProperty(BmhdChunk::ID));
    if (!map || !header) return false;
    const u32 width = header->m_nWidth;
    const u32 height = header->m_nHeight;

    const RowsInProgress rows(body);
    // Asked before the buffer is had: a few bytes of file can claim gigabytes of picture.
    if (!body.CanFillRows(height)) return false;
    const u64 stride = Stride24(width);
    const LargeBlock buffer = AllocateLargeBlock(SizeProduct(height, stride));
    const auto packRow = TheRowKernels().ColourMap;
    for (u32 y = height; y-- > 0;) {
        const u32* const values = body.DecodeRow();
        if (!values || !packRow(buffer.Data() + y * stride, values, width, map->Entries(), map->m_nEntries))
            return false;
    }
    m_nWidth = width;
    m_nHeight = height;
    m_nColours = map->m_nEntries;
    BITMAPINFO info;
    info.bmiHeader.biBitCount = 24;
    info.bmiHeader.biClrUsed = 0;
    CreateDisplayBitmap(info, buffer.Data());
    return true;
}
