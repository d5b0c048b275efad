// Marble at four sizes: a LIST whose PROP holds the colour map of all of them, the whole picture, the count
// of the smaller ones, and a LIST for each of those.

#include "chunks/extension_chunks.h"
#include "support/iff_builder.h"
#include "tools/samples/painting.h"
#include "tools/samples/samples.h"

#include <cmath>

namespace {

constexpr u32 SIDE = 256, LEVELS = 3;
constexpr u32 PLANES = 5, SHADES = 32;

std::vector<IffRgb> Colours() {
    std::vector<IffRgb> map;
    AddRamp(map, {22, 40, 52}, {96, 142, 138}, SHADES / 2);
    AddRamp(map, {112, 158, 150}, {250, 244, 226}, SHADES / 2);
    return map;
}

// From 0 to 1, at a place in the whole picture.
double Marble(double x, double y) {
    const double warp =
        26 * std::sin(y * 0.031 + 1.3 * std::sin(x * 0.019)) + 9 * std::sin(x * 0.083 + y * 0.05);
    const double vein = std::fabs(std::sin((x + 0.6 * y + warp) * 0.037));
    const double grain = 0.08 * std::sin(x * 0.41 + 3 * std::sin(y * 0.29)) * std::sin(y * 0.37);
    return std::pow(vein, 0.55) * 0.92 + grain;
}

// A pixel of a level is the mean of the whole picture's pixels that it stands for.
Bytes Level(u32 nLevel) {
    const u32 scale = 1u << nLevel, side = SIDE / scale;
    std::vector<u32> values;
    for (u32 y = 0; y < side; ++y) {
        for (u32 x = 0; x < side; ++x) {
            double sum = 0;
            for (u32 i = 0; i < scale * scale; ++i)
                sum += Marble(x * scale + i % scale, y * scale + i / scale);
            values.push_back(Dithered(0, SHADES, sum / (scale * scale), x, y));
        }
    }
    const u32 planeRowSize = (side + 7) / 8;
    return Form("ILBM", {Bmhd({.width = side, .height = side, .planes = PLANES, .compression = 1}),
                         Body(ByteRun(PlanesOf(values, side, PLANES), planeRowSize))});
}

}  // namespace

Bytes MarbleMipMaps() {
    std::vector<Bytes> parts = {Prop("ILBM", {Cmap(Colours())}), Level(0),
                                Form("MIPM", {Chunk("CONT", {LEVELS, 0})})};
    for (u32 level = 1; level <= LEVELS; ++level) parts.push_back(List("ILBM", {Level(level)}));
    return List("ILBM", parts);
}
