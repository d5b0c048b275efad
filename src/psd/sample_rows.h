// Rows of samples as they stand in a Photoshop document, and the rows of a plane that they become.
#pragma once

#include "base/types.h"

// Bytes of a row in the file: every row starts with a fresh byte.
constexpr u64 SampleRowSize(u32 nDepth, u32 nWidth) {
    return (u64{nWidth} * nDepth + 7) / 8;
}

// Makes nWidth samples of a plane from a row of the file, which may be the same memory where both are as
// long.
using PutRow = void (*)(u8* pOut, const u8* pRow, u32 nWidth);

// A set bit, black in the file, becomes 0 and a clear one 1, a byte each.
void PutBits(u8* pOut, const u8* pRow, u32 nWidth);
void PutBytes(u8* pOut, const u8* pRow, u32 nWidth);

// 16 bits a sample: native words, or the high byte of each.
void PutWords(u8* pOut, const u8* pRow, u32 nWidth);
void PutHighBytes(u8* pOut, const u8* pRow, u32 nWidth);

// 32 bits a sample: floating point, of which 0 to 1 is kept and becomes 0 to 255. Linear light is spread by
// the curve of sRGB.
void PutFloats(u8* pOut, const u8* pRow, u32 nWidth);
void PutLinearLight(u8* pOut, const u8* pRow, u32 nWidth);

// What undoes the prediction of a row of nWidth samples: each is stored as its difference from the one
// before. Of 32 bits a sample, the bytes are, the highest of all samples first.
void SumBytes(u8* pRow, u64 nSize);
void SumWords(u8* pRow, u32 nWidth);
void SumFloats(u8* pOut, u8* pRow, u32 nWidth);
