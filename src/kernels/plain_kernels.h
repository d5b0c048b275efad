// What the table of row kernels is put together from: the plain kernels that have a file of their own, and
// the places that vectors take.
#pragma once

#include "kernels/row_kernels.h"

void PlainPlanesToValues(u32* pValues, const u8* pPlanes, u32 nWidth, u32 nPlanes, u32 nPlaneRowSize);

void PlainColourBlocks(u8* pOut, i64 nPitch, const u8* pBlocks, u32 nBlockSize, u32 nBlocks,
                       bool bMayBeTransparent);

void PlainUnpackPackBits(PacketRow& row);
void PlainUnpackByteRun(PacketRow& row);

void PlainIndexedPixels(u32* pOut, const u8* pIndices, u32 nWidth, const u32* pColours);
void PlainPixels24(u32* pOut, const u8* pPixels, u32 nWidth);
void PlainIndexedColumns(u32* pOut, const u8* pIndices, const u32* pColumns, u32 nWidth, const u32* pColours);
void PlainColumns24(u32* pOut, const u8* pPixels, const u32* pColumns, u32 nWidth);
void PlainAddBytes(u16* pSums, const u8* pBytes, u32 nWidth);

// The colour map of values that all have a colour.
void LookUpColours(u8* pOut, const u32* pValues, u32 nWidth, const u32* pColours);

// Where the build has vectors: each puts its kernels for that kind of them into the table.
void UseBlockVectors(RowKernels& kernels, i64 nKind);
void UseColourVectors(RowKernels& kernels, i64 nKind);
void UseMapVectors(RowKernels& kernels, i64 nKind);
void UsePacketVectors(RowKernels& kernels, i64 nKind);
void UsePixelVectors(RowKernels& kernels, i64 nKind);
void UsePlaneVectors(RowKernels& kernels, i64 nKind);
