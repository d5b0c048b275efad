#include "kernels/row_kernels.h"

#include "kernels/plain_kernels.h"
#ifdef VISTREL_VECTORS
#include "kernels/vector_kinds.h"
#endif

namespace {

void HighBytes(u8* pOut, const u16* pSamples, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = static_cast<u8>(pSamples[x] >> 8);
}

void LowBytes(u8* pOut, const u16* pSamples, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x) pOut[x] = static_cast<u8>(pSamples[x]);
}

void Rgb8(u8* pOut, const u8* pRed, const u8* pGreen, const u8* pBlue, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        pOut[0] = pBlue[x];
        pOut[1] = pGreen[x];
        pOut[2] = pRed[x];
    }
}

void Rgb16(u8* pOut, const u16* pRed, const u16* pGreen, const u16* pBlue, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        pOut[0] = static_cast<u8>(pBlue[x] >> 8);
        pOut[1] = static_cast<u8>(pGreen[x] >> 8);
        pOut[2] = static_cast<u8>(pRed[x] >> 8);
    }
}

u8 Inked8(u32 nComponent, u32 nBlack) {
    return static_cast<u8>(nComponent * nBlack / 255);
}

u8 Inked16(u32 nComponent, u32 nBlack) {
    return static_cast<u8>(nComponent * nBlack / (65535 * 256));
}

void Cmyk8(u8* pOut, const u8* pCyan, const u8* pMagenta, const u8* pYellow, const u8* pBlack, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        pOut[0] = Inked8(pYellow[x], pBlack[x]);
        pOut[1] = Inked8(pMagenta[x], pBlack[x]);
        pOut[2] = Inked8(pCyan[x], pBlack[x]);
    }
}

void Cmyk16(u8* pOut, const u16* pCyan, const u16* pMagenta, const u16* pYellow, const u16* pBlack,
            u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        pOut[0] = Inked16(pYellow[x], pBlack[x]);
        pOut[1] = Inked16(pMagenta[x], pBlack[x]);
        pOut[2] = Inked16(pCyan[x], pBlack[x]);
    }
}

void PutGrey(u8* pOut, u8 nGrey) {
    pOut[0] = pOut[1] = pOut[2] = nGrey;
}

void GreyValues(u8* pOut, const u32* pValues, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) PutGrey(pOut, static_cast<u8>(pValues[x]));
}

void Bgra(u8* pOut, const u8* pPixels, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3, pPixels += 4) {
        pOut[0] = pPixels[0];
        pOut[1] = pPixels[1];
        pOut[2] = pPixels[2];
    }
}

void BgraAlpha(u8* pOut, const u8* pPixels, u32 nWidth) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3, pPixels += 4) PutGrey(pOut, pPixels[3]);
}

bool ColourMap(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours, u32 nColours) {
    for (u32 x = 0; x < nWidth; ++x, pOut += 3) {
        if (pValues[x] >= nColours) return false;
        const u32 colour = pColours[pValues[x]];
        pOut[0] = static_cast<u8>(colour);
        pOut[1] = static_cast<u8>(colour >> 8);
        pOut[2] = static_cast<u8>(colour >> 16);
    }
    return true;
}

}  // namespace

const RowKernels PLAIN_ROW_KERNELS = {HighBytes,
                                      LowBytes,
                                      Rgb8,
                                      Rgb16,
                                      Cmyk8,
                                      Cmyk16,
                                      PlainUnpackPackBits,
                                      PlainUnpackByteRun,
                                      PlainPlanesToValues,
                                      GreyValues,
                                      ColourMap,
                                      Bgra,
                                      BgraAlpha,
                                      PlainColourBlocks,
                                      PlainIndexedPixels,
                                      PlainPixels24,
                                      PlainIndexedColumns,
                                      PlainColumns24,
                                      PlainAddBytes};

#ifdef VISTREL_VECTORS
static RowKernels KernelsFor(i64 nKind) {
    RowKernels kernels = PLAIN_ROW_KERNELS;
    UseBlockVectors(kernels, nKind);
    UseColourVectors(kernels, nKind);
    UseMapVectors(kernels, nKind);
    UsePacketVectors(kernels, nKind);
    UsePixelVectors(kernels, nKind);
    UsePlaneVectors(kernels, nKind);
    return kernels;
}
#else
static i64 BestVectors() {
    return 0;
}
static bool FindVectors(const std::string&, i64&) {
    return false;
}
static RowKernels KernelsFor(i64) {
    return PLAIN_ROW_KERNELS;
}
#endif

static RowKernels& KernelsInUse() {
    static RowKernels kernels = KernelsFor(BestVectors());
    return kernels;
}

const RowKernels& TheRowKernels() {
    return KernelsInUse();
}

bool UseRowKernels(const std::string& strName) {
    i64 kind = 0;
    if (strName == BEST_ROW_KERNELS)
        kind = BestVectors();
    else if (strName != PLAIN_KERNELS_NAME && !FindVectors(strName, kind))
        return false;
    KernelsInUse() = KernelsFor(kind);
    return true;
}
