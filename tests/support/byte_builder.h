// Bytes of a test's input, put together by name. Numbers are big-endian, as in the files.
#pragma once

#include "base/types.h"

#include <string_view>
#include <vector>

using Bytes = std::vector<u8>;

struct ByteBuilder : public Bytes {
    // One field for each value.
    template <typename... Values>
    ByteBuilder& U8(Values... values) {
        (push_back(static_cast<u8>(values)), ...);
        return *this;
    }
    template <typename... Values>
    ByteBuilder& U16(Values... values) {
        return (U8(static_cast<u32>(values) >> 8, values), ...);
    }
    template <typename... Values>
    ByteBuilder& U32(Values... values) {
        return (U16(static_cast<u32>(values) >> 16, values), ...);
    }
    ByteBuilder& Text(std::string_view text) { return Append(Bytes(text.begin(), text.end())); }
    ByteBuilder& Repeat(u64 nCount, u32 nValue) { return Append(Bytes(nCount, static_cast<u8>(nValue))); }
    ByteBuilder& Append(const Bytes& bytes) {
        insert(end(), bytes.begin(), bytes.end());
        return *this;
    }
    // Four bytes, or eight.
    ByteBuilder& Length(u64 value, bool large) { return large ? U32(value >> 32, value) : U32(value); }
    // Bytes after their count, which can be made wrong.
    ByteBuilder& Block(const Bytes& bytes, i64 excess = 0, bool large = false) {
        return Length(bytes.size() + static_cast<u64>(excess), large).Append(bytes);
    }
};

// The first bytes.size() - nCount of them.
inline Bytes Truncated(const Bytes& bytes, u64 nCount) {
    return Bytes(bytes.begin(), bytes.end() - static_cast<i64>(nCount));
}
