#include "kernels/colour_block.h"
#include "kernels/plain_kernels.h"

void PlainColourBlocks(u8* pOut, i64 nPitch, const u8* pBlocks, u32 nBlockSize, u32 nBlocks,
                       bool bMayBeTransparent) {
    constexpr u32 SIDE = colour_block::SIDE;
    for (u32 i = 0; i < nBlocks; ++i, pBlocks += nBlockSize, pOut += SIDE * 3) {
        const colour_block::Block block = colour_block::Decode(pBlocks, bMayBeTransparent);
        for (u32 y = 0; y < SIDE; ++y) {
            u8* out = pOut + i64{y} * nPitch;
            for (u32 x = 0; x < SIDE; ++x, out += 3) {
                const u32 pixel = block[y * SIDE + x];
                out[0] = static_cast<u8>(pixel);
                out[1] = static_cast<u8>(pixel >> 8);
                out[2] = static_cast<u8>(pixel >> 16);
            }
        }
    }
}
