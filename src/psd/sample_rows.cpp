#include "psd/sample_rows.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>

namespace {

constexpr u32 WORD_SIZE = 2;   // bytes of a sample of 16 bits
constexpr u32 FLOAT_SIZE = 4;  // likewise of 32 bits

// The samples of each byte of a bit row, its most significant bit first. A set bit is black: it becomes 0,
// which a palette of two shades shows as black, and a clear one 1, white.
constexpr auto UNPACKED = [] {
    std::array<std::array<u8, 8>, 256> table = {};
    for (u32 byte = 0; byte < 256; ++byte)
        for (u32 bit = 0; bit < 8; ++bit) table[byte][bit] = (byte << bit & 0x80) ? 0 : 1;
    return table;
}();

u32 WordAt(const u8* pRow, u32 nPlace) {
    return static_cast<u32>(pRow[nPlace * WORD_SIZE] << 8 | pRow[nPlace * WORD_SIZE + 1]);
}

// From 0 to 1; what is no number is 0.
float FloatAt(const u8* pRow, u32 nPlace) {
    u32 pattern = 0;
    std::memcpy(&pattern, pRow + u64{nPlace} * FLOAT_SIZE, FLOAT_SIZE);
    if constexpr (std::endian::native == std::endian::little) pattern = __builtin_bswap32(pattern);
    const float value = std::bit_cast<float>(pattern);
    return value > 0 ? std::min(value, 1.0f) : 0.0f;
}

// Light as sRGB has it for a shade, both from 0 to 1.
double LightOf(double fShade) {
    return fShade <= 0.04045 ? fShade / 12.92 : std::pow((fShade + 0.055) / 1.055, 2.4);
}

// Turns light into shades of 0 to 255. Finding the place among the 255 borders between shades begins at what
// the upper bits of the number alone say.
class ShadeTable {
  public:
    ShadeTable() {
        for (u32 shade = 0; shade < m_borders.size(); ++shade)
            m_borders[shade] = static_cast<float>(LightOf((shade + 0.5) / 255));
        for (u32 upper = 0; upper < m_least.size(); ++upper) {
            const float least = std::bit_cast<float>(upper << LOWER_BITS);
            const auto after = std::upper_bound(m_borders.begin(), m_borders.end(), least);
            m_least[upper] = static_cast<u8>(after - m_borders.begin());
        }
    }

    u8 ShadeOf(float fLight) const {
        u32 shade = m_least[std::bit_cast<u32>(fLight) >> LOWER_BITS];
        while (shade < m_borders.size() && fLight >= m_borders[shade]) ++shade;
        return static_cast<u8>(shade);
    }

  private:
    static constexpr u32 LOWER_BITS = 16;
    static constexpr u32 UPPER_OF_ONE = std::bit_cast<u32>(1.0f) >> LOWER_BITS;

    std::array<float, 255> m_borders = {};  // the light from which on the next shade is shown
    std::array<u8, UPPER_OF_ONE + 1> m_least = {};
};

}  // namespace

void PutBits(u8* pOut, const u8* pRow, u32 nWidth) {
    for (u32 i = 0; i < nWidth / 8; ++i) std::memcpy(pOut + i * 8, UNPACKED[pRow[i]].data(), 8);
    const u32 rest = nWidth % 8;
    if (rest > 0) std::memcpy(pOut + (nWidth - rest), UNPACKED[pRow[nWidth / 8]].data(), rest);
}

void PutBytes(u8* pOut, const u8* pRow, u32 nWidth) {
    if (pOut != pRow) std::memcpy(pOut, pRow, nWidth);
}

void PutWords(u8* pOut, const u8* pRow, u32 nWidth) {
    for (u32 i = 0; i < nWidth; ++i) {
        const u16 word = static_cast<u16>(WordAt(pRow, i));
        std::memcpy(pOut + u64{i} * WORD_SIZE, &word, WORD_SIZE);
    }
}

void PutHighBytes(u8* pOut, const u8* pRow, u32 nWidth) {
    for (u32 i = 0; i < nWidth; ++i) pOut[i] = pRow[i * WORD_SIZE];
}

void PutFloats(u8* pOut, const u8* pRow, u32 nWidth) {
    for (u32 i = 0; i < nWidth; ++i) pOut[i] = static_cast<u8>(std::floor(FloatAt(pRow, i) * 255 + 0.5f));
}

void PutLinearLight(u8* pOut, const u8* pRow, u32 nWidth) {
    static const ShadeTable shades;
    for (u32 i = 0; i < nWidth; ++i) pOut[i] = shades.ShadeOf(FloatAt(pRow, i));
}

void SumBytes(u8* pRow, u64 nSize) {
    u8 sum = 0;
    for (u64 i = 0; i < nSize; ++i) {
        sum = static_cast<u8>(sum + pRow[i]);
        pRow[i] = sum;
    }
}

void SumWords(u8* pRow, u32 nWidth) {
    u32 sum = 0;
    for (u32 i = 0; i < nWidth; ++i) {
        sum += WordAt(pRow, i);
        pRow[i * WORD_SIZE] = static_cast<u8>(sum >> 8);
        pRow[i * WORD_SIZE + 1] = static_cast<u8>(sum);
    }
}

void SumFloats(u8* pOut, u8* pRow, u32 nWidth) {
    SumBytes(pRow, u64{nWidth} * FLOAT_SIZE);
    for (u32 i = 0; i < nWidth; ++i)
        for (u32 byte = 0; byte < FLOAT_SIZE; ++byte)
            pOut[u64{i} * FLOAT_SIZE + byte] = pRow[u64{byte} * nWidth + i];
}
