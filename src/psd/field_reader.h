// The fields of a Photoshop document. They are read without looking at the stream's state, which a reader
// tests at fixed points: bytes that the data no longer holds are 0.
#pragma once

#include "base/types.h"
#include "base/wrapping.h"
#include "iff/byte_stream.h"

#include <memory>

inline u32 ReadU8(ByteStream& stream) {
    u8 value = 0;
    stream.GetByte(value);
    return value;
}

inline u32 ReadU16(ByteStream& stream) {
    const u32 high = ReadU8(stream);
    return high << 8 | ReadU8(stream);
}

inline i32 ReadI16(ByteStream& stream) {
    return static_cast<i16>(ReadU16(stream));
}

inline u32 ReadU32(ByteStream& stream) {
    const u32 high = ReadU16(stream);
    return high << 16 | ReadU16(stream);
}

inline u64 ReadU64(ByteStream& stream) {
    const u64 high = ReadU32(stream);
    return high << 32 | ReadU32(stream);
}

inline i32 ReadI32(ByteStream& stream) {
    return static_cast<i32>(ReadU32(stream));
}

// A length and where it stands. What it is the length of follows it; its end, as every position, is counted
// modulo 2^32.
struct LengthField {
    u32 nAt = 0;
    u32 nFieldSize = 4;  // bytes
    u64 nLength = 0;

    u32 Start() const { return nAt + nFieldSize; }
    u32 End() const { return static_cast<u32>(Start() + nLength); }
};

// The position moves modulo 2^32, so a count of 0xFFFFFFFF is one byte back.
inline void Skip(ByteStream& stream, u32 nCount) {
    stream.SetPosition(WrappingSum(stream.GetPosition(), nCount));
}

// Reads nCount bytes: from the buffer when it holds them all, otherwise past it, straight into memory.
void ReadInto(ByteStream& stream, void* pOut, u32 nCount);

// Reads nLength bytes, at most 255, and keeps those before the first zero byte.
std::unique_ptr<char[]> ReadName(ByteStream& stream, u32 nLength);
