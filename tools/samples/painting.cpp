#include "tools/samples/painting.h"

#include <cmath>

IffRgb Mix(const IffRgb& from, const IffRgb& to, double fShare) {
    const auto mix = [fShare](u8 a, u8 b) { return static_cast<u8>(std::lround(a + (b - a) * fShare)); };
    return {mix(from.red, to.red), mix(from.green, to.green), mix(from.blue, to.blue)};
}

void AddRamp(std::vector<IffRgb>& map, const IffRgb& from, const IffRgb& to, u32 nSteps) {
    for (u32 i = 0; i < nSteps; ++i) map.push_back(Mix(from, to, i / (nSteps - 1.0)));
}

namespace {

// The threshold of an 8 by 8 ordered dither, from 0 to below 1.
double Threshold(u32 x, u32 y) {
    u32 rank = 0;
    for (u32 bit = 0; bit < 3; ++bit) {
        const u32 across = x >> bit & 1, down = y >> bit & 1;
        rank = rank << 2 | (across ^ down) << 1 | down;
    }
    return rank / 64.0;
}

}  // namespace

u32 Dithered(u32 nFirst, u32 nSteps, double fLevel, u32 x, u32 y) {
    const double place = std::fmin(std::fmax(fLevel, 0), 1) * (nSteps - 1);
    const double whole = std::floor(place);
    return nFirst + static_cast<u32>(whole) + (place - whole > Threshold(x, y) ? 1 : 0);
}
