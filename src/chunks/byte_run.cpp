#include "chunks/byte_run.h"

#include "kernels/packets.h"
#include "kernels/row_kernels.h"

#include <algorithm>
#include <cstring>

bool UnpackByteRun(u8* pOut, u32 nSize, ByteRunSource& source) {
    PacketRow row = {source.pCursor, source.pCursor + source.nRemaining, pOut, pOut + nSize};
    TheRowKernels().UnpackByteRun(row);
    // What is left are packets that the end of the row or of the data cuts off.
    const u8* cursor = row.pIn;
    const u8* const end = row.pInEnd;
    pOut = row.pOut;
    u8* const outEnd = row.pOutEnd;
    bool whole = true;
    while (pOut != outEnd && whole) {
        const u32 space = static_cast<u32>(outEnd - pOut);
        // A control byte with nothing after it ends the data, whatever it says.
        if (end - cursor < 2) {
            cursor = end;
            whole = false;
            continue;
        }
        const u32 control = *cursor++;
        if (control < 128) {
            const u32 wanted = std::min(control + 1, space);
            const u32 count = std::min(wanted, static_cast<u32>(end - cursor));
            std::memcpy(pOut, cursor, count);
            pOut += count;
            cursor += count;
            whole = count == wanted;
        } else if (control > 128) {
            const u32 length = 257 - control;
            const u32 count = std::min(length, space);
            std::memset(pOut, *cursor, count);
            pOut += count;
            if (count == length) ++cursor;
        }
    }
    source.pCursor = cursor;
    source.nRemaining = static_cast<u32>(end - cursor);
    return whole;
}

u64 ByteRunLength(const u8* pPacked, u32 nSize) {
    u64 length = 0;
    for (u64 at = 0; at < nSize;) {
        const u32 control = pPacked[at];
        const u64 left = nSize - ++at;
        if (control < 128) {
            const u64 count = std::min<u64>(control + 1, left);
            length += count;
            at += count;
        } else if (control > 128 && left > 0) {
            length += 257 - control;
            ++at;
        }
    }
    return length;
}
