// An evening by the sea: an IFF picture of 32 colours in five planes, packed.

#include "support/iff_builder.h"
#include "tools/samples/painting.h"
#include "tools/samples/samples.h"

#include <cmath>

namespace {

constexpr u32 WIDTH = 320;
constexpr u32 HEIGHT = 200;
constexpr double HORIZON = 122;
constexpr double SUN_X = 214, SUN_Y = 96, SUN_RADIUS = 21;

// Places in the colour map of the evening picture.
constexpr u32 SKY = 0, SKY_STEPS = 14;
constexpr u32 SUN = 14, SUN_STEPS = 3;
constexpr u32 HILLS = 17, HILL_RANGES = 3, HILL_STEPS = 3;
constexpr u32 WATER = 26, WATER_STEPS = 6;

std::vector<IffRgb> EveningColours() {
    std::vector<IffRgb> map;
    AddRamp(map, {22, 26, 74}, {136, 74, 132}, SKY_STEPS / 2);
    AddRamp(map, {168, 84, 122}, {255, 190, 96}, SKY_STEPS - SKY_STEPS / 2);
    AddRamp(map, {255, 214, 120}, {255, 250, 214}, SUN_STEPS);
    AddRamp(map, {112, 68, 120}, {150, 86, 124}, HILL_STEPS);
    AddRamp(map, {70, 46, 98}, {104, 62, 110}, HILL_STEPS);
    AddRamp(map, {28, 24, 58}, {60, 40, 84}, HILL_STEPS);
    AddRamp(map, {20, 22, 60}, {255, 196, 120}, WATER_STEPS);
    return map;
}

double HillTop(u32 nRange, double x) {
    const double far = HILL_RANGES - 1.0 - nRange;
    return HORIZON - 6 - far * 9 - (10 + far * 3) * std::sin(x * (0.021 + 0.008 * nRange) + nRange * 2.1) -
           4 * std::sin(x * 0.07 + nRange) - 1.5 * std::sin(x * 0.23 + 3 * nRange);
}

u32 Evening(u32 px, u32 py) {
    const double x = px, y = py;
    if (y >= HORIZON) {
        const double depth = (y - HORIZON) / (HEIGHT - HORIZON);
        const double wave = std::sin(y * y * 0.021) + 0.6 * std::sin(y * 1.7 + x * 0.11);
        const double fromGlitter = std::fabs(x - SUN_X + 5 * wave) / (12 + 46 * depth);
        const double glitter = std::exp(-fromGlitter * fromGlitter) * (0.75 + 0.25 * wave);
        return Dithered(WATER, WATER_STEPS, 0.22 - 0.2 * depth + 0.05 * wave + glitter * (1 - 0.4 * depth),
                        px, py);
    }
    for (u32 range = HILL_RANGES; range-- > 0;) {
        const double top = HillTop(range, x);
        if (y >= top) return Dithered(HILLS + range * HILL_STEPS, HILL_STEPS, (y - top) / 26, px, py);
    }
    const double fromSun = std::hypot(x - SUN_X, y - SUN_Y);
    if (fromSun < SUN_RADIUS) return Dithered(SUN, SUN_STEPS, 1 - fromSun / SUN_RADIUS, px, py);
    const double glow = 0.3 * std::exp(-(fromSun - SUN_RADIUS) / 30);
    return Dithered(SKY, SKY_STEPS, y / (HORIZON + 8) + glow, px, py);
}

}  // namespace

Bytes EveningPicture() {
    std::vector<u32> values;
    for (u32 y = 0; y < HEIGHT; ++y)
        for (u32 x = 0; x < WIDTH; ++x) values.push_back(Evening(x, y));
    constexpr u32 PLANES = 5;
    return Form("ILBM", {Bmhd({.width = WIDTH, .height = HEIGHT, .planes = PLANES, .compression = 1}),
                         Cmap(EveningColours()), Body(ByteRun(PlanesOf(values, WIDTH, PLANES), WIDTH / 8))});
}
