#include "psd/field_reader.h"

#include <algorithm>
#include <array>
#include <cassert>

LengthField ReadLength(ByteStream& stream) {
    LengthField field;
    field.nAt = stream.GetPosition();
    field.nLength = ReadU32(stream);
    return field;
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
    auto name = std::make_unique_for_overwrite<char[]>(kept + 1);
    std::copy_n(bytes.begin(), kept + 1, name.get());
    return name;
}
