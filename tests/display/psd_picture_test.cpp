#include "support/psd_builder.h"
#include "support/random.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

// Two pixels in one row. Sample i of channel c is 16 * (c + 1) + 2 * i, or that as the high byte of a word, which
// nothing rounds up; of one bit a sample, the first is black and the second white.
static Bytes Document(u32 nMode, u32 nDepth, u32 nChannels) {
    PsdFields fields = {.channels = nChannels, .columns = 2, .depth = nDepth, .mode = nMode};
    ByteBuilder samples;
    for (u32 value = 16; value < 16 * (nChannels + 1); value += 16) {
        if (nDepth == 1) samples.U8(0x80);
        if (nDepth == 8) samples.U8(value, value + 2);
        if (nDepth == 16) samples.U8(value, 255, value + 2, 255);
    }
    fields.samples = samples;
    // Entry i of the palette is 3 * i + 1, 3 * i + 2, 3 * i + 3.
    for (u32 i = 0; nMode == PSD_INDEXED && i < 768; ++i)
        fields.colourData.push_back(static_cast<u8>(i % 256 * 3 + i / 256 + 1));
    return Psd(fields);
}

TEST(PsdPicture, EveryModeAndDepthGoesToItsConverter) {
    for (const auto& [mode, depth, channels, channel, colours] : Table<u32, u32, u32, u32, const char*>{
             {PSD_GREYSCALE, 8, 1, 0, "<101010><121212>"},
             {PSD_GREYSCALE, 16, 1, 0, "<101010><121212>"},
             {PSD_BITMAP, 1, 1, 0, "kw"},
             {PSD_DUOTONE, 8, 2, 0, "<101010><121212>"},
             {PSD_INDEXED, 8, 1, 0, "<313233><373839>"},
             {PSD_INDEXED, 16, 1, 0, "<feff00><feff00>"},
             {PSD_INDEXED, 1, 1, 0, "<010203><040506>"},
             {PSD_RGB, 8, 3, 0, "<102030><122232>"},
             {PSD_RGB, 16, 3, 0, "<102030><122232>"},
             {PSD_RGB, 1, 3, 0, "k<010101>"},
             {PSD_RGB, 8, 1, 0, "<100000><120000>"},
             {PSD_RGB, 16, 1, 0, "<100000><120000>"},
             {PSD_RGB, 16, 4, 2, "<202020><222222>"},
             {PSD_RGB, 1, 4, 4, "kw"},
             {PSD_RGB, 8, 2, 3, ""},  // a colour that the file lacks
             {PSD_RGB, 16, 2, 3, ""},
             {PSD_RGB, 1, 2, 3, ""},
             {PSD_CMYK, 8, 1, 0, "<10ffff><12ffff>"},
             {PSD_CMYK, 8, 4, 0, "<04080c><04080c>"},
             {PSD_CMYK, 16, 1, 0, "<10ffff><12ffff>"},
             {PSD_CMYK, 16, 4, 0, "<04080c><04090d>"},
             {PSD_CMYK, 1, 3, 0, "k<010101>"},
             {PSD_LAB, 8, 3, 0, ""},
             {PSD_LAB, 8, 3, 2, "<202020><222222>"},
             {PSD_MULTICHANNEL, 8, 2, 0, ""},
         }) {
        const Shown shown(Document(mode, depth, channels), 0, channel);
        const std::string size = mode == PSD_INDEXED ? "2x1x256 " : "2x1x0 ";
        EXPECT_EQ(shown.Text(), *colours ? size + colours : "no bitmap")
            << "mode " << mode << ", depth " << depth << ", channel " << channel;
    }
}

TEST(PsdPicture, EveryWidthKeepsItsRowsApart) {
    for (u32 width = 1; width <= 9; ++width) {
        const Bytes plane = Random(width).SomeBytes(3 * width);
        const Bytes three = ByteBuilder().Append(plane).Append(plane).Append(plane);
        for (const auto& [mode, channels] : Table<u32, u32>{{PSD_GREYSCALE, 1}, {PSD_RGB, 3}}) {
            const Shown shown(Psd({.channels = channels, .rows = 3, .columns = width, .mode = mode, .samples = three}));
            for (u32 i = 0; i < plane.size(); ++i)
                EXPECT_EQ(PixelOf(*shown.image.m_hBitmap, i % width, i / width), 0xFF000000 | plane[i] * 0x010101u);
        }
    }
}

TEST(PsdPicture, LayersAreShownByTheIdsOfTheirChannels) {
    // One column, two rows, across the image's edge; the differences of the edges are unsigned. The document's
    // mode, depth and palette have no say in what a layer shows, and a later red takes the place of an earlier one.
    PsdLayerFields layer = {.top = 0x7FFFFFFF, .left = -1, .bottom = -0x7FFFFFFF, .right = 0};
    for (const auto& [id, samples] :
        Table<i32, Bytes>{{2, {1, 2}}, {0, {3, 4}}, {-1, {5, 6}}, {-2, {7, 8}}, {3, {0, 0}}, {0, {10, 11}}})
        layer.channels.push_back({.id = id, .data = RawData(samples)});
    PsdLayerFields masked = layer;
    masked.channels[3].data = RawData({7, 8, 9});
    masked.mask = ByteBuilder().U32(0, 0, 1, 3, 0);
    Shown shown(Psd({.depth = 16, .mode = PSD_INDEXED, .colourData = Bytes(768), .layers = {layer, masked}}));
    EXPECT_EQ(shown.Text(), "1x1x256 k");
    for (const auto& [nLayer, channel, text] : Table<u32, u32, const char*>{
             {1, 0, "1x2x0 <0a0001>/<0b0002>"},
             {1, 3, "1x2x0 <050505>/<060606>"},
             {1, 4, "1x2x0 <070707>/<080808>"},  // without mask data the layer's size counts
             {2, 4, "3x1x0 <070707><080808><090909>"},
         }) {
        shown.Select(nLayer, channel);
        EXPECT_EQ(shown.Text(), text) << channel;
    }
}
