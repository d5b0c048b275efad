#include "support/sample_files.h"

#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"

namespace {

const Bytes FOUR = Cmap({BLACK, RED, GREEN, BLUE});

Bytes Camg(u32 nMode) { return Chunk("CAMG", ByteBuilder().U32(nMode)); }

Bytes Planes(u32 nCount) { return Random(nCount).SomeBytes(nCount); }

// A picture with an alpha of its own, odd chunks, and one that nobody knows.
Bytes PackedPicture() {
    const Bytes body = ByteRun(PlanesOf({0, 1, 2, 3, 3, 2, 1, 0, 1, 1, 1, 2, 2, 2, 2, 3, 0, 3}, 9, 2), 2);
    const Bytes alpha = Alph({.width = 7, .height = 2, .planes = 2, .compression = 1, .data = ByteRun(Planes(4), 1)});
    return Form("ILBM", {Bmhd({9, 2, 2, 0, 1}), FOUR, Chunk("GRAB", {0, 1, 0, 2}), Chunk("TRAN", Bytes(8, 1)),
                            Chunk("ANNO", Bytes(3)), alpha, Body(body)});
}

Bytes Inherited() {
    const Bytes form = Form("ILBM", {Body(Planes(4))});
    return List("ILBM", {Prop("ILBM", {Bmhd({8, 2, 2}), FOUR}), Prop("MIPM", {}), Cat("ILBM", {form}), form});
}

Bytes MipMaps() {
    const auto picture = [](u32 nWidth) { return Form("ILBM", {Bmhd({nWidth, 1, 1}), FOUR, Body({0xA5})}); };
    const Bytes blocks = S3tc({.width = 2, .height = 1, .data = {0xE0, 0x07, 0, 0, 0, 0, 0, 0}});
    return List("ILBM", {picture(8), Form("MIPM", {Chunk("CONT", {2, 0})}), List("ILBM", {picture(4)}),
                            List("ILBM", {Form("ILBM", {blocks})})});
}

Bytes Blocks(const char* pszCode, u32 nBytes) {
    return Form("ILBM", {S3tc({.code = pszCode, .width = 5, .height = 5, .data = Planes(nBytes)})});
}

Bytes Animation() {
    const Bytes modified = Form("ILBM", {Bmhd({4, 2, 6, 1}), GreyCmap(16, 9), Camg(0x800), Body(Planes(28))});
    const Bytes halfBrite = Form("ILBM", {Bmhd({4, 1, 6}), FOUR, Camg(0x80), Body(Planes(6))});
    return Form("ANIM", {modified, halfBrite});
}

// What is read tolerantly alone: one byte a pixel, and a missing pad byte.
Bytes Chunky() {
    Bytes file = Form("PBM ", {Bmhd({5, 2, 8, 0, 1}), GreyCmap(4), Body({5, 1, 2, 3, 1, 2, 0, 0xFB, 3})});
    file.pop_back();
    return file;
}

// The tolerant rules show another picture of it.
Bytes TwoReadings() {
    return Cat("ILBM", {Form("PBM ", {Bmhd({5, 1, 8}), GreyCmap(4), Body({0, 1, 2, 3, 0, 0})}),
                           Form("ILBM", {Bmhd({8, 1}), FOUR, Chunk("ANNO", Bytes(8))})});
}

PsdFields Layered(u32 nDepth) {
    const u32 sampleSize = nDepth / 8;
    PsdLayerFields layer = {.bottom = 2, .right = 3, .mask = ByteBuilder().U32(0, 0, 1, 2, 0), .name = "sky"};
    layer.channels = {{.id = 0, .data = RawData(Planes(6 * sampleSize))},
        {.id = 1, .data = PackedData({{0xFE, 7}, {2, 7, 8, 9}})}, {.id = -2, .data = RawData({1, 2})}};
    PsdFields fields = {.channels = 4, .rows = 2, .columns = 3, .depth = nDepth, .mode = PSD_RGB, .layerCount = -1};
    fields.layers = {layer};
    fields.resources = {{.id = 1006, .data = {3, 'o', 'n', 'e'}}, {.name = "raw", .data = {1}}};
    fields.globalMasks = Bytes(28, 0x80);
    return fields;
}

// Parts that are read past the buffer, and lie across its edges.
Bytes LongPicture() {
    return Form("ILBM", {Chunk("ANNO", Bytes(1500)), Bmhd({80, 70, 8}), GreyCmap(256), Body(Planes(5600))});
}

// Zeroes are skipped that would make an empty document of their own.
Bytes LongDocument() {
    PsdFields fields = {.rows = 60, .columns = 50, .colourData = Bytes(8000)};
    const Bytes row = {0x81, 3};
    PsdLayerFields layer = {.bottom = 20, .right = 128, .name = "a name that is too long to be kept in place"};
    layer.channels = {{.data = RawData(Planes(20 * 128))}, {.data = PackedData(std::vector<Bytes>(20, row))}};
    fields.layers = std::vector<PsdLayerFields>(4, layer);
    fields.resources = {{.data = Bytes(1500)}};
    return Psd(fields);
}

// Rows of samples that are narrowed as they are read, past the buffer.
Bytes LongDeepDocument() {
    PsdLayerFields layer = {.bottom = 30, .right = 40, .name = "deep"};
    layer.channels = {{.data = RawData(Planes(2 * 30 * 40))}};
    return Psd({.depth = 16, .layers = {layer}});
}

}  // namespace

std::vector<SampleFile> SmallSampleFiles() {
    const PsdFields bits = {.channels = 4, .rows = 3, .columns = 9, .depth = 1, .mode = PSD_CMYK};
    return {
        {"packed", PackedPicture()},
        {"inherited", Inherited()},
        {"mip_maps", MipMaps()},
        {"dxt1", Blocks("DXT1", 32)},
        {"dxt5", Blocks("DXT5", 64)},
        {"animation", Animation()},
        {"chunky", Chunky()},
        {"two_readings", TwoReadings()},
        {"layered", Psd(Layered(8))},
        {"bits", Psd(bits)},
        {"large", Psd(LargePsd())},
        {"indexed", Psd(LayeredPsd())},
    };
}

std::vector<SampleFile> SampleFiles() {
    std::vector<SampleFile> samples = SmallSampleFiles();
    samples.push_back({"long_picture", LongPicture()});
    samples.push_back({"long_document", LongDocument()});
    samples.push_back({"long_deep_document", LongDeepDocument()});
    return samples;
}
