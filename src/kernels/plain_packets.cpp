#include "kernels/packets.h"
#include "kernels/plain_kernels.h"

#include <cstring>

namespace {

template <PacketKind KIND>
void Unpack(PacketRow& row) {
    while (row.pOut != row.pOutEnd && row.pInEnd - row.pIn > 1) {
        const Packet packet = NextPacket<KIND>(row);
        if (packet.nSize > row.pInEnd - row.pIn || packet.nCount > row.pOutEnd - row.pOut) break;
        const u64 count = static_cast<u64>(packet.nCount);
        if (packet.bIsRun)
            std::memset(row.pOut, row.pIn[1], count);
        else
            std::memcpy(row.pOut, row.pIn + 1, count);
        row.pIn += packet.nSize;
        row.pOut += packet.nCount;
    }
}

}  // namespace

void PlainUnpackPackBits(PacketRow& row) {
    Unpack<PacketKind::PackBits>(row);
}

void PlainUnpackByteRun(PacketRow& row) {
    Unpack<PacketKind::ByteRun>(row);
}
