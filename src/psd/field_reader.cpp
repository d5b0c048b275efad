#include "psd/field_reader.h"

#include <algorithm>
#include <array>
#include <cassert>

void ReadInto(ByteStream& stream, void* pOut, u32 nCount) {
    if (stream.m_pReadBuffer && u64{stream.m_nReadPos} + nCount <= stream.m_nLimit) {
        stream.GetBytes(static_cast<u8*>(pOut), nCount);
        return;
    }
    stream.Sync();
    stream.ReadBlock(pOut, nCount);
}

std::unique_ptr<char[]> ReadName(ByteStream& stream, u32 nLength) {
    std::array<u8, 256> bytes = {};
    assert(nLength < bytes.size());
    stream.GetBytes(bytes.data(), nLength);
    const u32 kept = static_cast<u32>(std::find(bytes.begin(), bytes.end(), u8{0}) - bytes.begin());
    auto name = std::make_unique_for_overwrite<char[]>(kept + 1);
    std::copy_n(bytes.begin(), kept + 1, name.get());
    return name;
}
