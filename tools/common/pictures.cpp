#include "tools/common/pictures.h"

#include "display/display_image.h"
#include "framework/core/exception.h"

#include <algorithm>
#include <array>

bool PictureBuilder::Build(DisplayImage& image, const Selection& selection) {
    bool built = false;
    try {
        image.BuildBitmap(m_document, selection);
        built = true;
    } catch (const CMemoryException& exception) {
        Say(m_names, "layer %u, channel %u: %s", selection.nLayer, selection.nChannel,
            AfxMemoryText(exception).data());
    }
    // One that memory refused in the end has been made up to there.
    if (image.m_hBitmap || !built) m_nPixels += u64{image.m_nWidth} * image.m_nHeight;
    return built;
}

void PictureBuilder::SayTooManyPixels() const {
    Say(m_names, "its pictures have passed %llu pixels; no more are built",
        static_cast<unsigned long long>(m_nMostPixels));
}

void CopyRgbRow(const GdiBitmap& bitmap, u32 y, u8* pOut) {
    std::array<u32, 256> pixels;
    for (u32 first = 0; first < bitmap.nWidth; first += static_cast<u32>(pixels.size())) {
        const u32 count = std::min<u32>(static_cast<u32>(pixels.size()), bitmap.nWidth - first);
        bitmap.ReadPixels(y, first, count, pixels.data());
        for (u32 i = 0; i < count; ++i) {
            *pOut++ = static_cast<u8>(pixels[i] >> 16);
            *pOut++ = static_cast<u8>(pixels[i] >> 8);
            *pOut++ = static_cast<u8>(pixels[i]);
        }
    }
}
