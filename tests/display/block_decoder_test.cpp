#include "display/block_decoder.h"

#include "chunks/extension_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <algorithm>

// The colours alone of a picture, as pixels of 24 bits without padding.
static Bytes ColoursOf(const S3tcChunk& chunk) {
    const S3tcBands bands(chunk);
    const i64 pitch = i64{chunk.m_nWidth} * 3;
    Bytes colours(static_cast<u64>(pitch) * chunk.m_nHeight);
    for (u32 top = 0; top < chunk.m_nHeight; top += S3TC_BAND_ROWS)
        bands.PutColours(top, colours.data() + top * pitch, pitch);
    return colours;
}

// The pixels of a picture as "rrggbbaa", or nothing.
static std::string Decoded(const S3tcFields& fields) {
    const LoadedIff file(Form("ILBM", {S3tc(fields)}));
    const auto& chunk = ChildAs<S3tcChunk>(file.Root(), 0);
    const LargeBlock pixels = DecodeS3tcImage(chunk);
    const Bytes colours = pixels ? ColoursOf(chunk) : Bytes();
    EXPECT_TRUE(!pixels || pixels.Size() == u64{fields.width} * fields.height * 4);
    std::string text;
    for (u64 i = 0; i + 4 <= pixels.Size(); i += 4) {
        const u8* const pixel = pixels.Data() + i;
        char hex[10];
        std::snprintf(hex, sizeof(hex), "%02x%02x%02x%02x ", pixel[2], pixel[1], pixel[0], pixel[3]);
        text += hex;
        EXPECT_TRUE(std::equal(pixel, pixel + 3, colours.data() + i / 4 * 3)) << "pixel " << i / 4;
    }
    return text;
}

// Two end points, which the files hold in little-endian order, with indices 0, 1, 2, 3 in the first row.
static Bytes Colours(u32 nFirst, u32 nSecond) {
    return ByteBuilder().U8(nFirst, nFirst >> 8, nSecond, nSecond >> 8, 0xE4, 0, 0, 0);
}

TEST(BlockDecoder, KnownRows) {
    const Bytes colours = Colours(0x001F, 0xF800);  // has no fourth colour where there is no alpha of its own
    const auto with = [&](const Bytes& alpha) -> Bytes { return ByteBuilder().Append(alpha).Append(colours); };
    const auto interpolated = [&](u8 nFirst, u8 nSecond) {
        return with({nFirst, nSecond, 2 | 7 << 3 | (1 << 6 & 0xFF), (1 >> 2) | 6 << 1, 0, 0, 0, 0});  // 2, 7, 1, 6
    };
    const Bytes nibbles = with({0x10, 0xF7, 0, 0, 0, 0, 0, 0});
    for (const auto& [code, data, row] : Table<const char*, Bytes, const char*>{
             {"DXT1", Colours(0xF800, 0x001F), "ff0000ff 0000ffff aa0055ff 5500aaff "},  // thirds
             {"DXT1", colours, "0000ffff ff0000ff 7f007fff 00000000 "},                  // a half, and nothing
             {"DXT1", Colours(0x07E0, 0x07E0), "00ff00ff 00ff00ff 00ff00ff 00000000 "},
             {"DXT1", Colours(0x8410, 0x0841), "848284ff 080808ff 5a595aff 313031ff "},  // bits are repeated
             {"DXT2", nibbles, "0000ff00 ff000011 5500aa77 aa0055ff "},
             {"DXT3", nibbles, "0000ff00 ff000011 5500aa77 aa0055ff "},
             {"DXT4", interpolated(200, 100), "0000ffb9 ff000072 5500aa64 aa005580 "},
             {"DXT5", interpolated(200, 100), "0000ffb9 ff000072 5500aa64 aa005580 "},
             {"DXT5", interpolated(100, 200), "0000ff78 ff0000ff 5500aac8 aa005500 "},
             {"DXT5", interpolated(100, 100), "0000ff64 ff0000ff 5500aa64 aa005500 "},
         })
        EXPECT_EQ(Decoded({.code = code, .height = 1, .data = data}), row) << code;
}

// One pixel after the other has index 1, all others 0.
TEST(BlockDecoder, EveryPixelOfABlockHasItsPlace) {
    for (const auto& [code, front, bits, back, others, one] :
        Table<const char*, Bytes, u32, u64, const char*, const char*>{
            {"DXT1", {0, 0xF8, 0x1F, 0}, 2, 0, "ff0000ff", "0000ffff"},
            {"DXT3", {}, 4, 8, "00000000", "00000011"},
            {"DXT5", {9, 8}, 3, 8, "00000009", "00000008"},
        })
        for (u32 place = 0; place < 16; ++place) {
            ByteBuilder block;
            block.Append(front);
            for (u32 bit = 0; bit < 16 * bits; bit += 8) block.U8(u64{1} << place * bits >> bit);
            std::string expected;
            for (u32 i = 0; i < 16; ++i) expected += std::string(i == place ? one : others) + " ";
            EXPECT_EQ(Decoded({.code = code, .data = block.Repeat(back, 0)}), expected) << code << " " << place;
        }
}

// Each crop shows what the whole blocks show there.
TEST(BlockDecoder, EdgesAreCropped) {
    for (const auto& [code, blockSize] : Table<const char*, u32>{{"DXT1", 8}, {"DXT3", 16}, {"DXT5", 16}}) {
        const Bytes all = Random(11).SomeBytes(4 * 4 * blockSize);
        for (u32 size = 0; size < 13 * 13; ++size) {
            const u32 width = size / 13 + 1, height = size % 13 + 1, across = (width + 3) / 4, down = (height + 3) / 4;
            const Bytes data = Truncated(all, (16 - across * down) * blockSize);
            const std::string whole = Decoded({.code = code, .width = across * 4, .height = down * 4, .data = data});
            std::string expected;
            for (u32 y = 0; y < height; ++y) expected += whole.substr(u64{y} * across * 4 * 9, u64{width} * 9);
            ASSERT_EQ(Decoded({.code = code, .width = width, .height = height, .data = data}), expected)
                << code << " " << width << " x " << height;
        }
    }
}

TEST(BlockDecoder, RefusesOtherCodesAndSizes) {
    for (const auto& [code, width, size, decodes] : Table<const char*, u32, u32, bool>{{"DXT1", 4, 8, true},
             {"DXT1", 4, 7, false}, {"DXT1", 4, 9, false}, {"DXT1", 5, 8, false}, {"DXT1", 0, 0, false},
             {"DXT3", 4, 8, false}, {"DXT6", 4, 16, false}, {"dxt1", 4, 8, false}})
        EXPECT_EQ(Decoded({.code = code, .width = width, .data = Bytes(size)}) != "", decodes) << code << size;
}
