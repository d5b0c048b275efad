// Packets unpacked with vectors: a whole piece is moved whatever the packet's length, and what it writes
// beyond the packet's end the next one overwrites. Which kind of packet comes next, and how long it is, is as
// good as random in a photograph, so that neither is branched on.

#include "kernels/packets.h"
#include "kernels/plain_kernels.h"
#include "kernels/vector_kinds.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "kernels/packet_vectors.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace packet_vectors::HWY_NAMESPACE {

#if HWY_TARGET == HWY_SCALAR

// A processor without vectors.
void PutKernels(RowKernels&) {}

#else

namespace hn = hwy::HWY_NAMESPACE;

using Bytes = hn::CappedTag<u8, 64>;

constexpr i64 PIECE = 64;  // bytes, a multiple of every vector's

// Puts the first piece of a packet. What stands in for the kind of packet has all bits set for a run.
HWY_INLINE void PutFirstPiece(const PacketRow& row, hn::Vec<Bytes> fill, hn::Vec<Bytes> isRun) {
    const Bytes bytes;
    const i64 step = static_cast<i64>(hn::Lanes(bytes));
    for (i64 at = 0; at < PIECE; at += step) {
        const auto literal = hn::LoadU(bytes, row.pIn + 1 + at);
        hn::StoreU(hn::Or(hn::And(isRun, fill), hn::AndNot(isRun, literal)), bytes, row.pOut + at);
    }
}

// The other pieces of one that is longer. A run has nothing more in the source to be read.
HWY_INLINE void PutFurtherPieces(const PacketRow& row, const Packet& packet, hn::Vec<Bytes> fill) {
    const Bytes bytes;
    const i64 step = static_cast<i64>(hn::Lanes(bytes));
    for (i64 at = PIECE; at < packet.nCount; at += step)
        hn::StoreU(packet.bIsRun ? fill : hn::LoadU(bytes, row.pIn + 1 + at), bytes, row.pOut + at);
}

// Goes on as long as the rest of source and row hold the packet and a piece more.
template <PacketKind KIND>
HWY_INLINE void UnpackPieces(PacketRow& row) {
    const Bytes bytes;
    while (row.pInEnd - row.pIn > PIECE + 1) {
        const Packet packet = NextPacket<KIND>(row);
        if (packet.nSize + PIECE > row.pInEnd - row.pIn || packet.nCount + PIECE > row.pOutEnd - row.pOut)
            break;
        const auto fill = hn::Set(bytes, row.pIn[1]);
        const auto isRun = hn::Set(bytes, static_cast<u8>(-static_cast<i32>(packet.bIsRun)));
        PutFirstPiece(row, fill, isRun);
        if (packet.nCount > PIECE) PutFurtherPieces(row, packet, fill);
        row.pIn += packet.nSize;
        row.pOut += packet.nCount;
    }
}

void UnpackPackBits(PacketRow& row) {
    PacketRow rest = row;
    UnpackPieces<PacketKind::PackBits>(rest);
    PLAIN_ROW_KERNELS.UnpackPackBits(rest);
    row = rest;
}

void UnpackByteRun(PacketRow& row) {
    PacketRow rest = row;
    UnpackPieces<PacketKind::ByteRun>(rest);
    PLAIN_ROW_KERNELS.UnpackByteRun(rest);
    row = rest;
}

void PutKernels(RowKernels& kernels) {
    kernels.UnpackPackBits = UnpackPackBits;
    kernels.UnpackByteRun = UnpackByteRun;
}

#endif

}  // namespace packet_vectors::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace packet_vectors {
static constexpr VectorKind ALL_KINDS[] = VISTREL_VECTOR_KINDS(PutKernels);
}

void UsePacketVectors(RowKernels& kernels, i64 nKind) {
    PutKernelsOf(kernels, nKind, packet_vectors::ALL_KINDS);
}
#endif
