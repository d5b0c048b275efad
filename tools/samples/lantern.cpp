// Paper lanterns at night: a Photoshop document of four layers, one with a mask, and two alpha channels. What
// shows is the layers laid one over the other.

#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "tools/samples/painting.h"
#include "tools/samples/samples.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace {

constexpr i32 WIDTH = 240, HEIGHT = 180;

struct Rect {
    i32 top, left, bottom, right;

    bool Holds(i32 x, i32 y) const { return x >= left && x < right && y >= top && y < bottom; }
};

constexpr Rect WHOLE = {0, 0, HEIGHT, WIDTH};

struct Painted {
    const char* name;
    Rect rect;
    std::function<IffRgb(i32, i32)> colour;
    std::function<double(i32, i32)> opacity;  // none for a layer without transparency
    std::function<double(i32, i32)> mask;     // none for a layer without one
};

u8 Byte(double fLevel) {
    return static_cast<u8>(std::lround(255 * std::clamp(fLevel, 0.0, 1.0)));
}

struct Lantern {
    double x, y, radius;
    IffRgb paper;

    double Distance(i32 px, i32 py) const { return std::hypot((px - x) / 0.86, py - y) / radius; }
    double Coverage(i32 px, i32 py) const { return std::clamp((1 - Distance(px, py)) * radius, 0.0, 1.0); }
    double Glow(i32 px, i32 py) const { return std::exp(-1.6 * std::max(Distance(px, py) - 1, 0.0)); }
    Rect Bounds() const {
        return {static_cast<i32>(y - radius) - 1, static_cast<i32>(x - radius) - 1,
                static_cast<i32>(y + radius) + 2, static_cast<i32>(x + radius) + 2};
    }
    IffRgb Paint(i32 px, i32 py) const {
        const double rib = 0.12 * std::fabs(std::sin((py - y) / radius * 11));
        const double light = 1 - 0.75 * std::pow(Distance(px, py), 2) - rib;
        return Mix(Mix(paper, {40, 8, 24}, 0.55), {255, 244, 196}, std::clamp(light, 0.0, 1.0));
    }
};

const Lantern LARGE = {88, 84, 46, {226, 60, 40}};
const Lantern SMALL = {184, 112, 28, {236, 140, 40}};

double Glow(i32 x, i32 y) {
    return std::min(LARGE.Glow(x, y) + 0.8 * SMALL.Glow(x, y), 1.0);
}

IffRgb Night(i32 x, i32 y) {
    const IffRgb sky = Mix({10, 14, 40}, {52, 30, 66}, y / double{HEIGHT});
    return Mix(sky, {150, 70, 62}, 0.55 * Glow(x, y));
}

// Hung from the upper edge.
double Strings(i32 x, i32 y) {
    const bool large = std::abs(x - static_cast<i32>(LARGE.x)) < 1 && y < LARGE.y - LARGE.radius;
    const bool small = std::abs(x - static_cast<i32>(SMALL.x)) < 1 && y < SMALL.y - SMALL.radius;
    return large || small ? 0.7 : 0;
}

std::vector<Painted> Layers() {
    const auto lantern = [](const Lantern& one, const char* pszName) {
        return Painted{pszName,
                       one.Bounds(),
                       [one](i32 x, i32 y) { return one.Paint(x, y); },
                       [one](i32 x, i32 y) { return one.Coverage(x, y); },
                       {}};
    };
    Painted small = lantern(SMALL, "Small lantern");
    // Its lower part fades away.
    small.mask = [](i32, i32 y) { return 1.25 - (y - SMALL.y + SMALL.radius) / (2 * SMALL.radius); };
    return {{"Night", WHOLE, Night, {}, {}},
            {"Strings",
             {0, 0, HEIGHT / 2, WIDTH},
             [](i32, i32) {
                 return IffRgb{24, 16, 26};
             },
             Strings,
             {}},
            lantern(LARGE, "Large lantern"),
            small};
}

// The samples of a plane, packed row by row.
Bytes Packed(const Rect& rect, const std::function<u8(i32, i32)>& sample) {
    std::vector<Bytes> rows;
    for (i32 y = rect.top; y < rect.bottom; ++y) {
        Bytes row;
        for (i32 x = rect.left; x < rect.right; ++x) row.push_back(sample(x, y));
        rows.push_back(ByteRun(row, static_cast<u32>(row.size())));
    }
    return PackedData(rows);
}

u8 Component(const IffRgb& colour, u32 nComponent) {
    return nComponent == 0 ? colour.red : nComponent == 1 ? colour.green : colour.blue;
}

PsdLayerFields LayerOf(const Painted& painted) {
    PsdLayerFields layer = {.top = painted.rect.top,
                            .left = painted.rect.left,
                            .bottom = painted.rect.bottom,
                            .right = painted.rect.right,
                            .name = painted.name};
    const auto add = [&](i32 nId, const std::function<u8(i32, i32)>& sample) {
        layer.channels.push_back({.id = nId, .data = Packed(painted.rect, sample)});
    };
    if (painted.opacity)
        add(PSD_CHANNEL_TRANSPARENCY, [&](i32 x, i32 y) { return Byte(painted.opacity(x, y)); });
    for (u32 c = 0; c < 3; ++c)
        add(static_cast<i32>(c), [&](i32 x, i32 y) { return Component(painted.colour(x, y), c); });
    if (painted.mask) {
        const Rect& rect = painted.rect;
        layer.mask = ByteBuilder()
                         .U32(static_cast<u32>(rect.top))
                         .U32(static_cast<u32>(rect.left))
                         .U32(static_cast<u32>(rect.bottom))
                         .U32(static_cast<u32>(rect.right))
                         .U32(0);
        add(PSD_CHANNEL_USER_MASK, [&](i32 x, i32 y) { return Byte(painted.mask(x, y)); });
    }
    return layer;
}

IffRgb Composite(const std::vector<Painted>& layers, i32 x, i32 y) {
    IffRgb shown;
    for (const Painted& layer : layers) {
        if (!layer.rect.Holds(x, y)) continue;
        double share = layer.opacity ? layer.opacity(x, y) : 1;
        if (layer.mask) share *= std::clamp(layer.mask(x, y), 0.0, 1.0);
        shown = Mix(shown, layer.colour(x, y), share);
    }
    return shown;
}

}  // namespace

Bytes LanternDocument() {
    const std::vector<Painted> painted = Layers();
    PsdFields document = {.channels = 5, .rows = HEIGHT, .columns = WIDTH, .mode = PSD_RGB};
    document.resources = {
        {.id = PSD_RESOURCE_ALPHA_NAMES, .data = ByteBuilder().U8(8).Text("Lanterns").U8(4).Text("Glow")}};
    for (const Painted& layer : painted) document.layers.push_back(LayerOf(layer));

    const auto sampleOf = [&](u32 nChannel, i32 x, i32 y) {
        if (nChannel < 3) return Component(Composite(painted, x, y), nChannel);
        if (nChannel == 3) return Byte(LARGE.Coverage(x, y) + SMALL.Coverage(x, y));
        return Byte(Glow(x, y));
    };
    Bytes counts, rows;
    for (u32 channel = 0; channel < document.channels; ++channel) {
        // Image data of one channel: two bytes of compression, then a count of two bytes for each row, then
        // the rows.
        const Bytes data = Packed(WHOLE, [&](i32 x, i32 y) { return sampleOf(channel, x, y); });
        counts.insert(counts.end(), data.begin() + 2, data.begin() + 2 + 2 * HEIGHT);
        rows.insert(rows.end(), data.begin() + 2 + 2 * HEIGHT, data.end());
    }
    document.compression = 1;
    document.samples = ByteBuilder().Append(counts).Append(rows);
    return Psd(document);
}
