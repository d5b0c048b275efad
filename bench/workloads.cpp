#include "workloads.h"

#include "photograph.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"

namespace {

constexpr u32 SIDE = 4096;

Bytes PackedPhotograph() {
    Photograph photograph(SIDE);
    PacketCounts packets;
    std::vector<Bytes> rows;
    for (u32 y = 0; y < 3 * SIDE; ++y)
        rows.push_back(PackRow(photograph.NextRow(y / SIDE, y % SIDE), packets));
    return PackedData(rows);
}

// Long runs, as a drawing has.
Bytes PackedDrawing() {
    PacketCounts packets;
    std::vector<Bytes> rows;
    for (u32 y = 0; y < 3 * SIDE; ++y) {
        Row row(SIDE);
        for (u32 x = 0; x < SIDE; ++x) row[x] = static_cast<u8>(x / 48 + y / 32);
        rows.push_back(PackRow(row, packets));
    }
    return PackedData(rows);
}

// The bit-planes of a photograph's first channel.
Bytes PlanesOfPhotograph() {
    Photograph photograph(SIDE);
    std::vector<u32> values;
    for (u32 y = 0; y < SIDE; ++y) {
        const Row row = photograph.NextRow(0, y);
        values.insert(values.end(), row.begin(), row.end());
    }
    return PlanesOf(values, SIDE, 8);
}

Bytes Raw(u32 nChannels, u32 nDepth, u32 nMode, u32 nSide = SIDE) {
    const u64 size = u64{nChannels} * nSide * nSide * nDepth / 8;
    return Psd({.channels = nChannels,
                .rows = nSide,
                .columns = nSide,
                .depth = nDepth,
                .mode = nMode,
                .samples = Random(2).SomeBytes(static_cast<u32>(size))});
}

Bytes Packed(const Bytes& data) {
    return Psd({.channels = 3,
                .rows = SIDE,
                .columns = SIDE,
                .mode = PSD_RGB,
                .compression = 1,
                .samples = Bytes(data.begin() + 2, data.end())});
}

Bytes Ilbm(bool bPacked) {
    const Bytes rows = bPacked ? PlanesOfPhotograph() : Random(3).SomeBytes(SIDE * SIDE);
    return Form("ILBM", {Bmhd({.width = SIDE, .height = SIDE, .planes = 8, .compression = bPacked}),
                         GreyCmap(256), Body(bPacked ? ByteRun(rows, SIDE / 8) : rows)});
}

Bytes Blocks() {
    return Form("ILBM", {S3tc({.code = "DXT1",
                               .width = SIDE,
                               .height = SIDE,
                               .data = Random(4).SomeBytes(SIDE / 4 * (SIDE / 4) * 8)})});
}

constexpr u32 LAYERS = 20;
constexpr u32 LAYER_WIDTH = 2000;
constexpr u32 LAYER_HEIGHT = 1500;
constexpr u32 PAGE_WIDTH = 2400;
constexpr u32 PAGE_HEIGHT = 1800;
constexpr u64 LAYERED_BITMAP = u64{PAGE_WIDTH} * PAGE_HEIGHT * 3;
constexpr u64 LAYERED_PLANES = u64{LAYERS} * LAYER_WIDTH * LAYER_HEIGHT * 4 + LAYERED_BITMAP;

Bytes PackedChannel(Photograph& photograph, u32 nChannel, u32 nHeight) {
    PacketCounts packets;
    std::vector<Bytes> rows;
    for (u32 y = 0; y < nHeight; ++y) rows.push_back(PackRow(photograph.NextRow(nChannel, y), packets));
    return PackedData(rows);
}

// Layers of red, green, blue and transparency, one over the other.
Bytes Layered() {
    Photograph photograph(LAYER_WIDTH);
    PsdLayerFields layer;
    for (i32 id = -1; id < 3; ++id)
        layer.channels.push_back({.id = id, .data = PackedChannel(photograph, id + 1, LAYER_HEIGHT)});
    std::vector<PsdLayerFields> layers;
    for (i32 i = 0; i < i32{LAYERS}; ++i) {
        layer.top = 10 * i;
        layer.left = 15 * i;
        layer.bottom = layer.top + i32{LAYER_HEIGHT};
        layer.right = layer.left + i32{LAYER_WIDTH};
        layer.name = "Layer " + std::to_string(i + 1);
        layers.push_back(layer);
    }
    return Psd({.channels = 3,
                .rows = PAGE_HEIGHT,
                .columns = PAGE_WIDTH,
                .mode = PSD_RGB,
                .layers = layers,
                .samples = Random(5).SomeBytes(static_cast<u32>(LAYERED_BITMAP))});
}

constexpr u64 PIXELS = u64{SIDE} * SIDE;

}  // namespace

const std::vector<Workload>& Workloads() {
    static const std::vector<Workload> workloads = {
        {"psd-rgb8-raw", [] { return Raw(3, 8, PSD_RGB); }, 3 * PIXELS, 3 * PIXELS},
        {"psd-rgb8-packbits-photo", [] { return Packed(PackedPhotograph()); }, 3 * PIXELS, 3 * PIXELS},
        {"psd-rgb8-packbits-drawing", [] { return Packed(PackedDrawing()); }, 3 * PIXELS, 3 * PIXELS},
        {"psd-rgb16-raw", [] { return Raw(3, 16, PSD_RGB); }, 6 * PIXELS, 3 * PIXELS},
        {"psd-cmyk8-raw", [] { return Raw(4, 8, PSD_CMYK); }, 4 * PIXELS, 3 * PIXELS},
        {"psd-bitmap-8192", [] { return Raw(1, 1, PSD_BITMAP, 8192); }, 4 * PIXELS, 4 * PIXELS},
        {"ilbm8-raw", [] { return Ilbm(false); }, PIXELS, 3 * PIXELS},
        {"ilbm8-byterun1", [] { return Ilbm(true); }, PIXELS, 3 * PIXELS},
        {"dxt1", Blocks, PIXELS / 2, 3 * PIXELS},
        {"psd-layers20", Layered, LAYERED_PLANES, LAYERED_BITMAP},
    };
    return workloads;
}

Bytes SquareDocument(u32 nSide) {
    return Raw(3, 8, PSD_RGB, nSide);
}
