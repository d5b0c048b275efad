// The colour block of block-compressed pictures: 8 bytes for 4 by 4 pixels.
//
// Two end points of 16 bits, little-endian (5 bits of red, 6 of green, 5 of blue), then 2 bits for each
// pixel, row by row, the first in the lowest. Where transparency is meant, the order of the end points says
// whether the fourth colour is none.
#pragma once

#include "base/types.h"

#include <array>
#include <cstring>

namespace colour_block {

constexpr u32 SIDE = 4;  // pixels
constexpr u32 SIZE = 8;  // bytes
constexpr u32 OPAQUE = 0xFF000000;

using Block = std::array<u32, SIDE * SIDE>;  // 0xAARRGGBB, row by row
using Palette = std::array<u32, 4>;

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

// The components, widened by repeating their upper bits.
inline Rgb Widened(u32 nColour) {
    const u32 red = nColour >> 11;
    const u32 green = nColour >> 5 & 63;
    const u32 blue = nColour & 31;
    return {red << 3 | red >> 2, green << 2 | green >> 4, blue << 3 | blue >> 2};
}

inline u32 Third(const Rgb& near, const Rgb& far) {
    const auto mix = [](u32 a, u32 b) { return (2 * a + b) / 3; };
    return Rgb{mix(near.red, far.red), mix(near.green, far.green), mix(near.blue, far.blue)}.Pixel();
}

inline u32 Half(const Rgb& a, const Rgb& b) {
    return Rgb{(a.red + b.red) / 2, (a.green + b.green) / 2, (a.blue + b.blue) / 2}.Pixel();
}

inline Block Decode(const u8* pBytes, bool bMayBeTransparent) {
    const u32 first = Load<u16>(pBytes);
    const u32 second = Load<u16>(pBytes + 2);
    const Rgb a = Widened(first);
    const Rgb b = Widened(second);
    const bool transparent = bMayBeTransparent && first <= second;
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

}  // namespace colour_block
