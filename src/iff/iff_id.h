// A four-character identifier, held as one word whose bytes are the characters in file order.
#pragma once

#include "base/types.h"

#include <cstring>

struct IffId {
    u32 m_nValue = 0;  // 0 is the null id

    constexpr IffId() = default;
    constexpr IffId(const char (&characters)[5])
        : m_nValue(Byte(characters[0]) | Byte(characters[1]) << 8 | Byte(characters[2]) << 16 |
                   Byte(characters[3]) << 24) {
        static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__,
                      "the first character is the lowest-addressed byte");
    }

    constexpr bool IsNull() const { return m_nValue == 0; }

    // Identity, bit for bit. Questions of the library are asked with Matches.
    constexpr bool operator==(const IffId&) const = default;

    // The null id matches every other.
    constexpr bool Matches(IffId other) const { return IsNull() || other.IsNull() || *this == other; }

  private:
    // Without the sign that a character may have.
    static constexpr u32 Byte(char character) { return static_cast<u8>(character); }
};

inline constexpr IffId ID_FORM("FORM");
inline constexpr IffId ID_LIST("LIST");
inline constexpr IffId ID_CAT("CAT ");
inline constexpr IffId ID_PROP("PROP");
inline constexpr IffId ID_PBM("PBM ");  // a form of pictures with one byte a pixel
inline constexpr IffId ID_NULL;
