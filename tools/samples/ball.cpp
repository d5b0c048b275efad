// A ball and its shadow: an IFF picture of 16 colours with an alpha picture of eight planes ahead of it.

#include "support/iff_builder.h"
#include "tools/samples/painting.h"
#include "tools/samples/samples.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr u32 SIDE = 160;
constexpr double X = 76, Y = 70, RADIUS = 58;
constexpr u32 PLANES = 4, SHADES = 15, SHADOW = 15;

std::vector<IffRgb> Colours() {
    std::vector<IffRgb> map;
    AddRamp(map, {36, 6, 20}, {214, 52, 44}, 9);
    AddRamp(map, {226, 86, 60}, {255, 250, 236}, SHADES - 9);
    map.push_back({18, 22, 34});
    return map;
}

double FromCentre(u32 x, u32 y) {
    return std::hypot(x - X, y - Y);
}

// Light from the upper left, with a highlight.
u32 Shade(u32 x, u32 y) {
    const double nx = (x - X) / RADIUS, ny = (y - Y) / RADIUS;
    const double depth = 1 - nx * nx - ny * ny;
    if (depth < 0) return SHADOW;
    const double light = -0.48 * nx - 0.56 * ny + 0.68 * std::sqrt(depth);
    const double level = 0.1 + 0.52 * std::max(light, 0.0) + 0.42 * std::pow(std::max(light, 0.0), 18);
    return Dithered(0, SHADES, level, x, y);
}

// The ball covers all, its edge partly, its shadow half at most.
u32 Alpha(u32 x, u32 y) {
    const double ball = std::clamp(RADIUS + 0.5 - FromCentre(x, y), 0.0, 1.0);
    const double fromShadow = std::hypot((x - X - 14) / 62, (y - Y - 66) / 15);
    const double shadow = 0.55 * std::clamp(1.25 - fromShadow, 0.0, 1.0);
    return static_cast<u32>(std::lround(255 * std::max(ball, shadow)));
}

}  // namespace

Bytes BallPicture() {
    std::vector<u32> shades, alphas;
    for (u32 y = 0; y < SIDE; ++y) {
        for (u32 x = 0; x < SIDE; ++x) {
            shades.push_back(Shade(x, y));
            alphas.push_back(Alpha(x, y));
        }
    }
    const Bytes alpha = ByteRun(PlanesOf(alphas, SIDE, 8), SIDE / 8);
    return Form("ILBM",
                {Bmhd({.width = SIDE, .height = SIDE, .planes = PLANES, .compression = 1}), Cmap(Colours()),
                 Alph({.width = SIDE, .height = SIDE, .planes = 8, .compression = 1, .data = alpha}),
                 Body(ByteRun(PlanesOf(shades, SIDE, PLANES), SIDE / 8))});
}
