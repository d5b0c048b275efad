// The fields of a Photoshop document. They are read without looking at the stream's state, which a reader
// tests at fixed points: bytes that the data no longer holds are 0.
#pragma once

#include "base/types.h"
#include "iff/byte_stream.h"

#include <memory>
#include <string_view>

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

inline i32 ReadI32(ByteStream& stream) {
    return static_cast<i32>(ReadU32(stream));
}

// False at the first byte that differs; the bytes behind it are not read.
bool Matches(ByteStream& stream, std::string_view signature);

// The position moves modulo 2^32, so a count of 0xFFFFFFFF is one byte back.
inline void Skip(ByteStream& stream, u32 count) {
    stream.SetPosition(stream.GetPosition() + count);
}

// Whether the data can still deliver that many bytes. If not, nothing more may be allocated for them, and the
// stream is left in the state that reading them would have left.
bool CanDeliver(ByteStream& stream, u64 count);

// Bytes of the data from its start, or the furthest position where that is not known.
u32 DataLength(ByteStream& stream);

// Reads count bytes: from the buffer when it holds them all, otherwise past it, straight into memory.
void ReadInto(ByteStream& stream, void* data, u32 count);

// Reads length bytes and keeps those before the first zero byte; null when memory for them cannot be had.
std::unique_ptr<char[]> ReadName(ByteStream& stream, u32 length);
