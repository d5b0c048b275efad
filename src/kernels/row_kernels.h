// What is done to a row of samples, pixel values or pixels, one pass each. The functions are reached through
// a table, in which faster ones take the places of the plain ones where the build and the processor have
// them.
#pragma once

#include "base/types.h"

#include <string>

struct PacketRow;

// Pixels of 24 bits are blue, green, red; pixels of 32 bits are words of 0xFFRRGGBB. No row is null, and none
// overlaps another.
struct RowKernels {
    void (*HighBytes)(u8* pOut, const u16* pSamples, u32 nWidth);
    void (*LowBytes)(u8* pOut, const u16* pSamples, u32 nWidth);
    void (*Rgb8)(u8* pOut, const u8* pRed, const u8* pGreen, const u8* pBlue, u32 nWidth);
    void (*Rgb16)(u8* pOut, const u16* pRed, const u16* pGreen, const u16* pBlue, u32 nWidth);
    // The largest sample means no ink, so a component is scaled by black, not reduced by it.
    void (*Cmyk8)(u8* pOut, const u8* pCyan, const u8* pMagenta, const u8* pYellow, const u8* pBlack,
                  u32 nWidth);
    void (*Cmyk16)(u8* pOut, const u16* pCyan, const u16* pMagenta, const u16* pYellow, const u16* pBlack,
                   u32 nWidth);

    // Packets one after the other, as long as they are whole and fit into the row, which they may fill. Of
    // the row nothing is read, and what is not filled yet may be written.
    void (*UnpackPackBits)(PacketRow& row);
    void (*UnpackByteRun)(PacketRow& row);

    // nPlanes plane rows of nPlaneRowSize bytes, at least ceil(nWidth / 8), one after the other. Bit p of a
    // value is the pixel's bit in plane p; planes from the 33rd on are passed over.
    void (*PlanesToValues)(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes, u32 nPlaneRowSize);
    // The low byte of each value, as a shade of grey.
    void (*GreyValues)(u8* pOut, const u32* pValues, u32 nWidth);
    // The colour of each value, a word of 0x00RRGGBB. False at the first value that has none.
    bool (*ColourMap)(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours, u32 nColours);

    // Pixels of blue, green, red and alpha: their colour, or their alpha as a shade of grey.
    void (*Bgra)(u8* pOut, const u8* pPixels, u32 nWidth);
    void (*BgraAlpha)(u8* pOut, const u8* pPixels, u32 nWidth);
    // Colour blocks of 4 by 4 pixels, nBlockSize bytes apart, as four rows of 24 bits a pixel: the first at
    // pOut, each other nPitch bytes after the one above. Only whole blocks; a fourth colour that is
    // transparent is black.
    void (*ColourBlocks)(u8* pOut, i64 nPitch, const u8* pBlocks, u32 nBlockSize, u32 nBlocks,
                         bool bMayBeTransparent);

    // Pixels of a bitmap, one after the other or those of some columns, as pixels of 32 bits: from indices of
    // 256 such pixels, or from 24 bits.
    void (*IndexedPixels)(u32* pOut, const u8* pIndices, u32 nWidth, const u32* pColours);
    void (*Pixels24)(u32* pOut, const u8* pPixels, u32 nWidth);
    void (*IndexedColumns)(u32* pOut, const u8* pIndices, const u32* pColumns, u32 nWidth,
                           const u32* pColours);
    void (*Columns24)(u32* pOut, const u8* pPixels, const u32* pColumns, u32 nWidth);

    // Adds each byte to the sum in its place, modulo 2^16.
    void (*AddBytes)(u16* pSums, const u8* pBytes, u32 nWidth);
};

extern const RowKernels PLAIN_ROW_KERNELS;

// The kernels in use: the best that the processor has.
const RowKernels& TheRowKernels();

inline constexpr const char* PLAIN_KERNELS_NAME = "plain";
inline constexpr const char* BEST_ROW_KERNELS = "best";  // where there are no vectors, the plain ones

// Uses the kernels of this name from now on: one of these two, or a kind of vectors, "AVX2" for instance.
// False where the build or the processor lacks them.
bool UseRowKernels(const std::string& strName);
