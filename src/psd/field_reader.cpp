#include "psd/field_reader.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <new>

bool Matches(ByteStream& stream, std::string_view signature) {
    return std::all_of(signature.begin(), signature.end(),
                       [&](char c) { return ReadU8(stream) == static_cast<u8>(c); });
}

bool CanDeliver(ByteStream& stream, u64 count) {
    if (count <= stream.GetRemaining()) return true;
    stream.m_nStatus |= BS_END;
    return false;
}

u32 DataLength(ByteStream& stream) {
    constexpr u32 UNKNOWN = 0xFFFFFFFF;
    const u32 remaining = stream.GetRemaining();
    return remaining == UNKNOWN ? UNKNOWN : stream.GetPosition() + remaining;
}

void ReadInto(ByteStream& stream, void* data, u32 count) {
    if (stream.m_pReadBuffer && u64{stream.m_nReadPos} + count <= stream.m_nLimit) {
        stream.GetBytes(static_cast<u8*>(data), count);
        return;
    }
    stream.Sync();
    stream.ReadBlock(data, count);
}

std::unique_ptr<char[]> ReadName(ByteStream& stream, u32 length) {
    std::array<u8, 256> bytes = {};
    assert(length < bytes.size());
    stream.GetBytes(bytes.data(), length);
    const u32 kept = static_cast<u32>(std::find(bytes.begin(), bytes.end(), u8{0}) - bytes.begin());
    std::unique_ptr<char[]> name(new (std::nothrow) char[kept + 1]);
    if (name) std::copy_n(bytes.begin(), kept + 1, name.get());
    return name;
}
