#include "tools/export/png_file.h"

#include "tools/export/byte_sink.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csetjmp>
#include <png.h>
#include <zlib.h>

namespace {

constexpr size_t COMPRESSION_BUFFER = 64 * 1024;
constexpr int LEVEL = 6;

[[noreturn]] void JumpOut(png_structp pPng, png_const_charp) {
    png_longjmp(pPng, 1);
}

void SayNothing(png_structp, png_const_charp) {}

void WriteBytes(png_structp pPng, png_bytep pData, size_t nSize) {
    auto* const sink = static_cast<ByteSink*>(png_get_io_ptr(pPng));
    if (!sink->Write(pData, nSize)) png_error(pPng, "");
}

void FlushNothing(png_structp) {}

// What the library keeps while it writes.
class Writer {
  public:
    explicit Writer(ByteSink& sink)
        : pPng(png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, JumpOut, SayNothing)),
          pInfo(pPng ? png_create_info_struct(pPng) : nullptr) {
        if (pInfo) png_set_write_fn(pPng, &sink, WriteBytes, FlushNothing);
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { png_destroy_write_struct(&pPng, &pInfo); }

    png_structp pPng;
    png_infop pInfo;  // null where memory lacked
};

// The least bits in which an index finds room.
int IndexDepth(size_t nEntries) {
    if (nEntries <= 2) return 1;
    if (nEntries <= 4) return 2;
    return nEntries <= 16 ? 4 : 8;
}

int ColourType(PngPixels pixels) {
    switch (pixels) {
        case PngPixels::Rgba:
            return PNG_COLOR_TYPE_RGB_ALPHA;
        case PngPixels::Indices:
            return PNG_COLOR_TYPE_PALETTE;
        default:
            return PNG_COLOR_TYPE_RGB;
    }
}

void SetTable(const Writer& writer, const std::vector<u32>& table) {
    std::array<png_color, 256> entries;
    for (size_t i = 0; i < table.size(); ++i)
        entries[i] = {static_cast<u8>(table[i] >> 16), static_cast<u8>(table[i] >> 8),
                      static_cast<u8>(table[i])};
    png_set_PLTE(writer.pPng, writer.pInfo, entries.data(), static_cast<int>(table.size()));
}

void SetText(const Writer& writer, const PngText& text) {
    png_text entry = {};
    entry.compression = PNG_TEXT_COMPRESSION_NONE;
    // The library takes both as if it changed them.
    entry.key = const_cast<char*>(text.pszKey);
    entry.text = const_cast<char*>(text.value.c_str());
    entry.text_length = text.value.size();
    png_set_text(writer.pPng, writer.pInfo, &entry, 1);
}

void WriteHead(const Writer& writer, const PngPicture& picture) {
    const bool isIndexed = picture.pixels == PngPixels::Indices;
    const int depth = isIndexed ? IndexDepth(picture.table.size()) : 8;
    const bool isQuick = picture.effort == PngEffort::Quick;
    png_set_compression_level(writer.pPng, isQuick ? Z_BEST_SPEED : LEVEL);
    png_set_compression_strategy(writer.pPng, isQuick ? Z_RLE : Z_DEFAULT_STRATEGY);
    png_set_compression_buffer_size(writer.pPng, COMPRESSION_BUFFER);
    // Neighbours in a table have no more to do with each other than any two entries. Elsewhere the difference
    // to the pixel on the left does nearly as well as the best of all filters, in a small part of the time.
    png_set_filter(writer.pPng, PNG_FILTER_TYPE_BASE, isIndexed ? PNG_FILTER_NONE : PNG_FILTER_SUB);
    png_set_IHDR(writer.pPng, writer.pInfo, picture.nWidth, picture.nHeight, depth,
                 ColourType(picture.pixels), PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    if (isIndexed) SetTable(writer, picture.table);
    for (const PngText& text : picture.texts) SetText(writer, text);
    png_write_info(writer.pPng, writer.pInfo);
    if (isIndexed) png_set_packing(writer.pPng);
    if (picture.pixels == PngPixels::Bgr) png_set_bgr(writer.pPng);
}

// The library leaves by a jump to here, past frames that have nothing to destroy.
bool Write(const Writer& writer, const PngPicture& picture) {
    if (setjmp(png_jmpbuf(writer.pPng)) != 0) return false;
    WriteHead(writer, picture);
    for (u32 y = 0; y < picture.nHeight; ++y) png_write_row(writer.pPng, picture.row(y));
    png_write_end(writer.pPng, writer.pInfo);
    return true;
}

}  // namespace

bool WritePng(ByteSink& sink, const PngPicture& picture) {
    const Writer writer(sink);
    errno = ENOMEM;  // of what fails without a call of the system's, nothing but memory can
    return writer.pInfo && Write(writer, picture);
}
