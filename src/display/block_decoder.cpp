#include "display/block_decoder.h"

#include "base/checked_size.h"
#include "chunks/extension_chunks.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr u32 SIDE = 4;         // of a block, in pixels
constexpr u32 COLOUR_SIZE = 8;  // bytes of a colour block, and of the alpha block before it
constexpr u32 OPAQUE = 0xFF000000;
constexpr u32 COLOUR_BITS = 0x00FFFFFF;

using Palette = std::array<u32, 4>;
using Block = std::array<u32, SIDE * SIDE>;  // 0xAARRGGBB, row by row

// Little-endian, as the blocks are.
template <typename Integer>
Integer Load(const u8* pBytes) {
    static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);
    Integer value;
    std::memcpy(&value, pBytes, sizeof(value));
    return value;
}

struct Rgb {
    u32 red, green, blue;

    u32 Pixel() const { return OPAQUE | red << 16 | green << 8 | blue; }
};

// Red, green and blue of 5, 6 and 5 bits, widened by repeating their upper bits.
Rgb Widened(u32 nColour) {
    const u32 red = nColour >> 11, green = nColour >> 5 & 63, blue = nColour & 31;
    return {red << 3 | red >> 2, green << 2 | green >> 4, blue << 3 | blue >> 2};
}

u32 Third(const Rgb& near, const Rgb& far) {
    const auto mix = [](u32 a, u32 b) { return (2 * a + b) / 3; };
    return Rgb{mix(near.red, far.red), mix(near.green, far.green), mix(near.blue, far.blue)}.Pixel();
}

u32 Half(const Rgb& a, const Rgb& b) {
    return Rgb{(a.red + b.red) / 2, (a.green + b.green) / 2, (a.blue + b.blue) / 2}.Pixel();
}

// Two end points, and 2 bits for each pixel, the first in the lowest. Where transparency is meant, the order
// of the end points says whether the fourth colour is none.
template <bool MayBeTransparent>
Block DecodeColours(const u8* pBytes) {
    const u32 first = Load<u16>(pBytes), second = Load<u16>(pBytes + 2);
    const Rgb a = Widened(first), b = Widened(second);
    const bool transparent = MayBeTransparent && first <= second;
    const Palette palette = {a.Pixel(), b.Pixel(), transparent ? Half(a, b) : Third(a, b),
                             transparent ? 0 : Third(b, a)};
    u32 indices = Load<u32>(pBytes + 4);
    Block block;
    for (u32& pixel : block) {
        pixel = palette[indices & 3];
        indices >>= 2;
    }
    return block;
}

void SetAlpha(u32& nPixel, u32 nAlpha) {
    nPixel = (nPixel & COLOUR_BITS) | nAlpha << 24;
}

// 4 bits for each pixel, the first in the lowest.
void ApplyExplicitAlpha(Block& block, const u8* pBytes) {
    u64 nibbles = Load<u64>(pBytes);
    for (u32& pixel : block) {
        SetAlpha(pixel, static_cast<u32>(nibbles & 15) * 17);
        nibbles >>= 4;
    }
}

// Two end points, and 3 bits for each pixel, the first in the lowest.
void ApplyInterpolatedAlpha(Block& block, const u8* pBytes) {
    const u32 first = pBytes[0], second = pBytes[1];
    std::array<u32, 8> palette = {first, second};
    const u32 steps = first > second ? 7 : 5;
    for (u32 i = 1; i < steps; ++i) palette[i + 1] = ((steps - i) * first + i * second) / steps;
    if (steps == 5) palette[7] = 255;  // and the one before stays 0
    u64 indices = Load<u64>(pBytes) >> 16;
    for (u32& pixel : block) {
        SetAlpha(pixel, palette[indices & 7]);
        indices >>= 3;
    }
}

struct OneBitAlpha {
    static constexpr u32 BLOCK_SIZE = COLOUR_SIZE;
    static Block Decode(const u8* pBytes) { return DecodeColours<true>(pBytes); }
};

struct ExplicitAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = DecodeColours<false>(pBytes + COLOUR_SIZE);
        ApplyExplicitAlpha(block, pBytes);
        return block;
    }
};

struct InterpolatedAlpha {
    static constexpr u32 BLOCK_SIZE = 2 * COLOUR_SIZE;
    static Block Decode(const u8* pBytes) {
        Block block = DecodeColours<false>(pBytes + COLOUR_SIZE);
        ApplyInterpolatedAlpha(block, pBytes);
        return block;
    }
};

template <typename Format>
LargeBlock DecodeBlocks(const S3tcChunk& chunk) {
    const u64 width = chunk.m_nWidth, height = chunk.m_nHeight;
    const u64 across = (width + SIDE - 1) / SIDE, down = (height + SIDE - 1) / SIDE;
    if (across * down == 0 || across * down * Format::BLOCK_SIZE != chunk.m_nDataSize) return {};
    LargeBlock pixels = LargeBlock::Allocate(SizeProduct(width, height, sizeof(u32)));
    const u8* bytes = chunk.m_pData.Data();
    for (u64 top = 0; top < height; top += SIDE) {
        const u64 rows = std::min<u64>(SIDE, height - top);
        for (u64 left = 0; left < width; left += SIDE, bytes += Format::BLOCK_SIZE) {
            const Block block = Format::Decode(bytes);
            const u64 rowSize = std::min<u64>(SIDE, width - left) * sizeof(u32);
            u8* out = pixels.Data() + (top * width + left) * sizeof(u32);
            for (u64 y = 0; y < rows; ++y, out += width * sizeof(u32))
                std::memcpy(out, &block[y * SIDE], rowSize);
        }
    }
    return pixels;
}

}  // namespace

LargeBlock DecodeS3tcImage(const S3tcChunk& chunk) {
    const IffId code = chunk.m_Code;
    if (code == IffId("DXT1")) return DecodeBlocks<OneBitAlpha>(chunk);
    // The second and the fourth hold colour multiplied by alpha, which is shown as it is stored.
    if (code == IffId("DXT2") || code == IffId("DXT3")) return DecodeBlocks<ExplicitAlpha>(chunk);
    if (code == IffId("DXT4") || code == IffId("DXT5")) return DecodeBlocks<InterpolatedAlpha>(chunk);
    return {};
}
