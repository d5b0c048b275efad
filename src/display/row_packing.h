// Rows of samples or pixel values packed into rows of a device-independent bitmap, one pass each. The
// functions are reached through a table, in which faster ones take the places of the plain ones where the
// build and the processor have them.
#pragma once

#include "base/types.h"
#include "iff/iff_archive.h"

#include <string>

// Pixels of 24 bits are blue, green, red. No row is null.
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
    // The low byte of each value, as a shade of grey.
    void (*GreyValues)(u8* pOut, const u32* pValues, u32 nWidth);
    // Pixels of blue, green, red and alpha: their colour, or their alpha as a shade of grey.
    void (*Bgra)(u8* pOut, const u8* pPixels, u32 nWidth);
    void (*BgraAlpha)(u8* pOut, const u8* pPixels, u32 nWidth);
    // False at the first value that has no entry.
    bool (*ColourMap)(u8* pOut, const u32* pValues, u32 nWidth, const IffRgb* pEntries, u32 nEntries);
};

extern const RowKernels PLAIN_ROW_KERNELS;

// The kernels in use: the best that the processor has.
const RowKernels& TheRowKernels();

inline constexpr const char* PLAIN_KERNELS_NAME = "plain";
inline constexpr const char* BEST_ROW_KERNELS = "best";  // where there are no vectors, the plain ones

// Uses the kernels of this name from now on: one of these two, or a kind of vectors, "AVX2" for instance.
// False where the build or the processor lacks them.
bool UseRowKernels(const std::string& strName);
