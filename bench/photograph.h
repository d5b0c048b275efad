// A picture with literals and runs mixed as in a camera's: measured on one of those, packets make 29 bytes on
// average, literals 49 and runs 5, and nine bytes in ten are literal.
#pragma once

#include "base/types.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

using Row = std::vector<u8>;

// One row of a landscape: a sky that clips into flat white towards its light, a dark edge that clips into
// black, and ground with texture. Sensor noise grows with the light and leaves short runs in the shadows.
class Photograph {
  public:
    explicit Photograph(u32 nSide) : m_nSide(nSide) {}

    Row NextRow(u32 nChannel, u32 y) {
        Row row(m_nSide);
        const double horizon = m_nSide * 0.45;
        for (u32 x = 0; x < m_nSide; ++x) {
            const double slope = std::sin(x * 0.0017 + nChannel) * 60 + std::cos(y * 0.0023) * 50;
            const double light = y < horizon ? 215 - nChannel * 20 + slope * 0.8
                                             : 75 + slope + std::sin(x * 0.05) * std::cos(y * 0.07) * 25;
            const double noise = m_noise(m_random) * (y < horizon ? 1.6 : 1.1 + light / 60);
            row[x] = static_cast<u8>(std::clamp(std::lround(light + noise), 0l, 255l));
        }
        return row;
    }

  private:
    u32 m_nSide;  // pixels
    std::minstd_rand m_random{4711};
    std::normal_distribution<double> m_noise{0, 1};
};

struct PacketCounts {
    u64 m_nRuns = 0;
    u64 m_nLiterals = 0;
};

// As editors write it: repetitions of three and more become runs, everything between them literals.
inline Row PackRow(const Row& row, PacketCounts& packets) {
    Row packed;
    auto runAt = [&](u64 x) {
        u64 end = x + 1;
        while (end < row.size() && end - x < 128 && row[end] == row[x]) ++end;
        return end - x;
    };
    for (u64 x = 0; x < row.size();) {
        const u64 run = runAt(x);
        if (run >= 3) {
            packed.push_back(static_cast<u8>(257 - run));
            packed.push_back(row[x]);
            x += run;
            ++packets.m_nRuns;
            continue;
        }
        const u64 start = x;
        while (x < row.size() && x - start < 128 && runAt(x) < 3) ++x;
        packed.push_back(static_cast<u8>(x - start - 1));
        packed.insert(packed.end(), row.begin() + start, row.begin() + x);
        ++packets.m_nLiterals;
    }
    return packed;
}
