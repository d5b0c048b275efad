#include "display/block_decoder.h"

#include "chunks/extension_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

// The pixels of a picture as "rrggbbaa", or nothing.
std::string Decoded(const S3tcFields& fields) {
    const LoadedIff file(Form("ILBM", {S3tc(fields)}));
    const LargeBlock pixels = DecodeS3tcImage(ChildAs<S3tcChunk>(file.Root(), 0));
    EXPECT_TRUE(!pixels || pixels.Size() == u64{fields.width} * fields.height * 4);
    std::string text;
    for (u64 i = 0; i < pixels.Size(); i += 4) {
        const u8* const p = pixels.Data() + i;
        char pixel[10];
        std::snprintf(pixel, sizeof(pixel), "%02x%02x%02x%02x ", p[2], p[1], p[0], p[3]);
        text += pixel;
    }
    return text;
}

// The first row of a block.
std::string FirstRow(std::string_view code, const Bytes& block) {
    return Decoded({.code = code, .width = 4, .height = 1, .data = block});
}

// Indices 0, 1, 2, 3 in the first row.
const Bytes INDICES = {0xE4, 0, 0, 0};

Bytes Colours(u32 first, u32 second) {
    return ByteBuilder().U8(first).U8(first >> 8).U8(second).U8(second >> 8).Append(INDICES);
}

TEST(BlockDecoder, KnownColours) {
    struct Case {
        const char* name;
        Bytes block;
        const char* row;
    };
    for (const Case& c : {
             Case{"red over blue: thirds", Colours(0xF800, 0x001F), "ff0000ff 0000ffff aa0055ff 5500aaff "},
             Case{"blue below red: a half and nothing", Colours(0x001F, 0xF800),
                  "0000ffff ff0000ff 7f007fff 00000000 "},
             Case{"equal end points count as below", Colours(0x07E0, 0x07E0),
                  "00ff00ff 00ff00ff 00ff00ff 00000000 "},
             Case{"bits are repeated, thirds truncated", Colours(0x8410, 0x0841),
                  "848284ff 080808ff 5a595aff 313031ff "},
         })
        EXPECT_EQ(FirstRow("DXT1", c.block), c.row) << c.name;
}

TEST(BlockDecoder, KnownAlphas) {
    const Bytes colours =
        Colours(0x001F, 0xF800);  // would have a transparent colour without alpha of its own
    const auto with = [&](const Bytes& alpha) { return Bytes(ByteBuilder().Append(alpha).Append(colours)); };
    const Bytes nibbles = with({0x10, 0xF7, 0, 0, 0, 0, 0, 0});
    for (const char* code : {"DXT2", "DXT3"})
        EXPECT_EQ(FirstRow(code, nibbles), "0000ff00 ff000011 5500aa77 aa0055ff ") << code;
    // Indices 2, 7, 1, 6 of 3 bits each.
    const Bytes indices = {2 | 7 << 3 | (1 << 6 & 0xFF), (1 >> 2) | 6 << 1, 0, 0, 0, 0};
    const auto interpolated = [&](u32 first, u32 second) {
        return with(ByteBuilder().U8(first).U8(second).Append(indices));
    };
    for (const char* code : {"DXT4", "DXT5"}) {
        EXPECT_EQ(FirstRow(code, interpolated(200, 100)), "0000ffb9 ff000072 5500aa64 aa005580 ") << code;
        EXPECT_EQ(FirstRow(code, interpolated(100, 200)), "0000ff78 ff0000ff 5500aac8 aa005500 ") << code;
    }
}

TEST(BlockDecoder, EveryPixelOfABlockHasItsPlace) {
    // Index 1 in the four corners alone.
    const Bytes block = {0, 0xF8, 0x1F, 0, 0x41, 0, 0, 0x41};
    const std::string red = "ff0000ff ", blue = "0000ffff ";
    const std::string edge = blue + red + red + blue, middle = red + red + red + red;
    EXPECT_EQ(Decoded({.data = block}), edge + middle + middle + edge);
}

// Each crop shows what the whole blocks show there.
TEST(BlockDecoder, EdgesAreCropped) {
    Random random(11);
    for (const auto& [code, blockSize] :
         {std::pair("DXT1", 8u), std::pair("DXT3", 16u), std::pair("DXT5", 16u)}) {
        const Bytes all = random.SomeBytes(4 * 4 * blockSize);
        for (u32 width = 1; width <= 13; ++width) {
            for (u32 height = 1; height <= 13; ++height) {
                const u32 across = (width + 3) / 4, down = (height + 3) / 4;
                const Bytes data(all.begin(), all.begin() + across * down * blockSize);
                const std::string whole =
                    Decoded({.code = code, .width = across * 4, .height = down * 4, .data = data});
                std::string expected;
                for (u32 y = 0; y < height; ++y)
                    expected += whole.substr(u64{y} * across * 4 * 9, u64{width} * 9);
                ASSERT_EQ(Decoded({.code = code, .width = width, .height = height, .data = data}), expected)
                    << code << " " << width << " x " << height;
            }
        }
    }
}

TEST(BlockDecoder, RefusesOtherCodesAndSizes) {
    EXPECT_NE(Decoded({.data = Bytes(8)}), "") << "control";
    EXPECT_EQ(Decoded({.data = Bytes(7)}), "");
    EXPECT_EQ(Decoded({.data = Bytes(9)}), "");
    EXPECT_EQ(Decoded({.width = 5, .data = Bytes(8)}), "");
    EXPECT_EQ(Decoded({.width = 0, .data = Bytes(0)}), "");
    EXPECT_EQ(Decoded({.height = 0, .data = Bytes(0)}), "");
    EXPECT_EQ(Decoded({.code = "DXT3", .data = Bytes(8)}), "");
    EXPECT_EQ(Decoded({.code = "DXT6", .data = Bytes(16)}), "");
    EXPECT_EQ(Decoded({.code = "dxt1", .data = Bytes(8)}), "");
}

}  // namespace
