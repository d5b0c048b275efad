// Rows packed as packets, PackBits or ByteRun1: a header byte n from 0 to 127 is followed by n + 1 bytes that
// stand for themselves, a negative one by a byte that stands for 1 - n copies of itself. The two differ in
// -128: a run of 129, or nothing.
#pragma once

#include "base/types.h"

// What is left of the source and of the row. The two do not overlap.
struct PacketRow {
    const u8* pIn;
    const u8* pInEnd;
    u8* pOut;
    u8* pOutEnd;
};

enum class PacketKind : bool { PackBits, ByteRun };

struct Packet {
    bool bIsRun;
    i64 nSize;   // bytes that it takes
    i64 nCount;  // bytes that it makes
};

// The packet at the row's source, of which at least one byte is left.
template <PacketKind KIND>
inline Packet NextPacket(const PacketRow& row) {
    const i64 header = static_cast<i8>(*row.pIn);
    const bool isRun = header < 0;
    if (KIND == PacketKind::ByteRun && header == -128) return {false, 1, 0};
    return {isRun, isRun ? 2 : 2 + header, isRun ? 1 - header : 1 + header};
}
