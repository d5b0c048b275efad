#include "tools/export/picture_file.h"

#include "framework/core/gdi_bitmap.h"
#include "tools/common/pictures.h"
#include "tools/export/byte_sink.h"
#include "tools/export/png_file.h"

#include <algorithm>
#include <string>

namespace {

// Indices of a file's pixels that are beyond the table show as their lookup says, so that has entries for
// them.
std::vector<u32> TableOf(const GdiBitmap& bitmap) {
    u32 count = bitmap.header.biClrUsed == 0 ? 256 : std::clamp<u32>(bitmap.header.biClrUsed, 1, 256);
    for (u32 y = 0; y < bitmap.nHeight && count < 256; ++y) {
        const u8* const row = bitmap.Row(y);
        count = std::max<u32>(count, *std::max_element(row, row + bitmap.nWidth) + 1);
    }
    return {bitmap.colours, bitmap.colours + count};
}

bool WriteOpaquePng(ByteSink& sink, const GdiBitmap& bitmap) {
    const bool isIndexed = bitmap.header.biBitCount == 8;
    PngPicture png = {.nWidth = bitmap.nWidth,
                      .nHeight = bitmap.nHeight,
                      .pixels = isIndexed ? PngPixels::Indices : PngPixels::Bgr,
                      .row = [&](u32 y) { return bitmap.Row(y); }};
    if (isIndexed) png.table = TableOf(bitmap);
    return WritePng(sink, png);
}

bool WritePngWithAlpha(ByteSink& sink, const GdiBitmap& bitmap, const GdiBitmap& alpha) {
    const LargeBlock colours = LargeBlock::Allocate(u64{bitmap.nWidth} * 3);
    const LargeBlock greys = LargeBlock::Allocate(u64{bitmap.nWidth} * 3);
    const LargeBlock pixels = LargeBlock::Allocate(u64{bitmap.nWidth} * 4);
    const auto row = [&](u32 y) {
        CopyRgbRow(bitmap, y, colours.Data());
        CopyRgbRow(alpha, y, greys.Data());
        u8* out = pixels.Data();
        for (u64 i = 0; i < u64{bitmap.nWidth} * 3; i += 3) {
            out = std::copy_n(colours.Data() + i, 3, out);
            *out++ = greys.Data()[i];
        }
        return pixels.Data();
    };
    return WritePng(
        sink, {.nWidth = bitmap.nWidth, .nHeight = bitmap.nHeight, .pixels = PngPixels::Rgba, .row = row});
}

bool WritePpm(ByteSink& sink, const GdiBitmap& bitmap) {
    const std::string head =
        "P6\n" + std::to_string(bitmap.nWidth) + " " + std::to_string(bitmap.nHeight) + "\n255\n";
    if (!sink.Write(head.data(), head.size())) return false;
    const LargeBlock row = LargeBlock::Allocate(u64{bitmap.nWidth} * 3);
    for (u32 y = 0; y < bitmap.nHeight; ++y) {
        CopyRgbRow(bitmap, y, row.Data());
        if (!sink.Write(row.Data(), row.Size())) return false;
    }
    return true;
}

}  // namespace

bool WritePicture(ByteSink& sink, const ShownPicture& picture, PictureFormat format) {
    const GdiBitmap& bitmap = *picture.pBitmap;
    bool written = false;
    if (format == PictureFormat::Ppm)
        written = WritePpm(sink, bitmap);
    else if (picture.pAlpha)
        written = WritePngWithAlpha(sink, bitmap, *picture.pAlpha);
    else
        written = WriteOpaquePng(sink, bitmap);
    return written && sink.Flush();
}
