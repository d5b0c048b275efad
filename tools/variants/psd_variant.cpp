#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "tools/variants/variants.h"

#include <algorithm>

namespace {

Bytes Samples(Dice& dice, const Size& size, u32 nDepth) {
    const std::vector<u32> values = DrawValues(dice, size);
    if (nDepth == 1) return PlanesOf(values, size.width, 1);
    ByteBuilder samples;
    for (const u32 value : values) nDepth == 16 ? samples.U16(value) : samples.U8(value);
    return samples;
}

// Packets that no writer chooses: short runs, and runs of the greatest length.
Bytes OddPackets(Dice& dice, u32 nWidth) {
    ByteBuilder row;
    while (nWidth > 0) {
        const u32 count = dice.Between(1, std::min(nWidth, 129u));
        if (count == 129 || dice.OneIn(2))
            row.U8(257 - count, dice());
        else
            row.U8(count - 1).Append(dice.SomeBytes(count));
        nWidth -= count;
    }
    return row;
}

// The samples of nChannels, one below the other, after their compression.
Bytes ImageData(Dice& dice, const Size& size, u32 nChannels, u32 nDepth) {
    const bool packed = nDepth == 8 && dice.OneIn(2);
    ByteBuilder raw;
    std::vector<Bytes> rows;
    for (u32 i = 0; i < nChannels; ++i) {
        const Bytes samples = Samples(dice, size, nDepth);
        raw.Append(samples);
        for (auto row = samples.begin(); packed && row != samples.end(); row += size.width)
            rows.push_back(dice.OneIn(6) ? OddPackets(dice, size.width)
                                         : ByteRun(Bytes(row, row + size.width), size.width));
    }
    return packed ? PackedData(rows) : RawData(raw);
}

std::string Name(Dice& dice) {
    const Bytes name = dice.SomeBytes(dice.OneIn(20) ? 255 : dice.Below(9));
    return {name.begin(), name.end()};
}

// Bytes that a length claims too many.
i32 Excess(Dice& dice) {
    return dice.OneIn(100) ? static_cast<i32>(dice.Below(9)) - 4 : 0;
}

PsdResourceFields Resource(Dice& dice) {
    const u32 id = dice.OneOf<u32>({1005, 1036, PSD_RESOURCE_ALPHA_NAMES});
    ByteBuilder data;
    for (u32 count = dice.Below(4); count > 0; --count) {
        const std::string name = Name(dice);
        data.U8(name.size()).Text(name);
    }
    if (dice.OneIn(50)) data.U8(7);
    return {"8BIM", id, Name(dice), data};
}

PsdLayerFields Layer(Dice& dice) {
    const Size size(dice), maskSize(dice);
    const i32 top = static_cast<i32>(dice.Below(12)) - 4, left = 5 - top;
    PsdLayerFields layer = {top, left, top + static_cast<i32>(size.height),
                            left + static_cast<i32>(size.width)};
    const bool hasMask = dice.OneIn(3);
    if (hasMask) layer.mask = ByteBuilder().U32(top, 7, top + maskSize.height, 7 + maskSize.width, dice());
    if (dice.OneIn(100)) layer.mask.push_back(0);
    for (const i32 id : {-1, 0, 1, 2, 3, PSD_CHANNEL_USER_MASK}) {
        if (dice.OneIn(4)) continue;
        Bytes data = ImageData(dice, hasMask && id == PSD_CHANNEL_USER_MASK ? maskSize : size, 1, 8);
        if (dice.OneIn(200)) data[1] = static_cast<u8>(dice.Below(5));
        layer.channels.push_back({id, data, Excess(dice)});
    }
    layer.key = dice.OneOf({"norm", "mul ", "scrn", "\xFF\x80\n\\"});
    layer.opacity = dice();
    layer.clipping = dice();
    layer.flags = dice();
    layer.ranges = dice.SomeBytes(dice.OneOf<u64>({0, 5, 8, 8 + 8 * layer.channels.size(), dice.Below(60)}));
    layer.rangesExcess = Excess(dice);
    layer.name = Name(dice);
    layer.extra = dice.SomeBytes(dice.OneOf({0, 0, 0, 1, 12}));
    layer.extraExcess = Excess(dice);
    return layer;
}

}  // namespace

Bytes PsdVariant(Dice& dice) {
    constexpr u32 COLOURS[] = {1, 1, 1, 3, 4, 0, 0, 1, 1, 3};  // of each mode
    const Size size(dice);
    PsdFields document = {.rows = size.height, .columns = size.width};
    document.mode = dice.OneOf<u32>({0, 1, 2, 3, 3, 3, 4, 7, 8, 9});
    document.depth = document.mode == PSD_BITMAP ? 1 : dice.OneOf<u32>({8, 8, 8, 16, 16, 1});
    document.channels =
        dice.OneIn(20) ? 24 : std::max(1u, COLOURS[document.mode] + dice.OneOf({0, 0, 1, 2, -1}));
    document.colourData = dice.SomeBytes(document.mode == PSD_INDEXED ? 768 : dice.OneOf({0, 0, 9}));
    for (u32 count = dice.Below(4); count > 0; --count) document.resources.push_back(Resource(dice));
    document.resourcesExcess = Excess(dice);
    for (u32 count = dice.OneOf({0, 0, 1, 2, 3}); count > 0; --count) document.layers.push_back(Layer(dice));
    if (dice.OneIn(3)) document.layerCount = -static_cast<i32>(document.layers.size());
    document.layerPad = Bytes(dice.Below(2));
    document.layersExcess = Excess(dice);
    document.globalMasks = dice.SomeBytes(dice.OneOf({0, 0, 14, 28}));
    document.globalMasksExcess = Excess(dice);
    const Bytes data = ImageData(dice, size, document.channels, document.depth);
    constexpr u32 TAGGED_BLOCK = '8' << 8 | 'B';  // of a newer document
    document.compression = dice.OneIn(60) ? dice.OneOf<u32>({0, 1, 2, 3, TAGGED_BLOCK}) : data[1];
    document.samples = Bytes(data.begin() + 2, data.end());
    return Psd(document);
}
