// Bytes of a test's input, put together by name. Numbers are big-endian, as in the files.
#pragma once

#include "base/types.h"

#include <string_view>
#include <vector>

using Bytes = std::vector<u8>;

class ByteBuilder {
  public:
    ByteBuilder& U8(u32 value) {
        m_bytes.push_back(static_cast<u8>(value));
        return *this;
    }
    ByteBuilder& U16(u32 value) { return U8(value >> 8).U8(value); }
    ByteBuilder& U32(u32 value) { return U16(value >> 16).U16(value); }
    ByteBuilder& Text(std::string_view text) {
        m_bytes.insert(m_bytes.end(), text.begin(), text.end());
        return *this;
    }
    ByteBuilder& Append(const Bytes& bytes) {
        m_bytes.insert(m_bytes.end(), bytes.begin(), bytes.end());
        return *this;
    }
    ByteBuilder& Repeat(u64 count, u32 value) {
        m_bytes.insert(m_bytes.end(), count, static_cast<u8>(value));
        return *this;
    }

    const Bytes& Get() const { return m_bytes; }
    operator Bytes() const { return m_bytes; }

  private:
    Bytes m_bytes;
};

// The first bytes.size() - count of them.
Bytes Truncated(const Bytes& bytes, u64 count);
