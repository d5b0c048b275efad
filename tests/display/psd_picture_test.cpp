#include "support/psd_filler.h"
#include "support/shown.h"

#include <gtest/gtest.h>

namespace {

// Two pixels in one row. Sample i of channel c is 16 * (c + 1) + i, or that as the high byte of a word.
u8 ByteSample(u32 i) {
    return static_cast<u8>(16 * (i / 2 + 1) + i % 2);
}
u16 WordSample(u32 i) {
    return static_cast<u16>(ByteSample(i) << 8 | 0x03);
}
u8 BitSample(u32 i) {
    return i % 2;
}

void Fill(PsdImage& psd, u32 mode, u32 depth, u32 channels) {
    psd.m_nMode = mode;
    psd.m_nDepth = depth;
    psd.m_nChannels = channels;
    psd.m_nWidth = 2;
    psd.m_nHeight = 1;
    if (depth == 16)
        FillPlanes(psd, WordSample);
    else
        FillPlanes(psd, depth == 8 ? ByteSample : BitSample);
    if (mode != PSD_INDEXED) return;
    psd.m_pPalette = std::make_unique<u8[]>(3 * PSD_PALETTE_SIZE);
    for (u32 i = 0; i < 3 * PSD_PALETTE_SIZE; ++i) psd.m_pPalette[i] = static_cast<u8>(i + 1);
}

TEST(PsdPicture, EveryModeAndDepthGoesToItsConverter) {
    struct Case {
        u32 mode, depth, channels, channel;
        const char* colours;
    };
    for (const Case& c : {
             Case{PSD_GREYSCALE, 8, 1, 0, "101010 111111"},
             Case{PSD_GREYSCALE, 16, 1, 0, "101010 111111"},
             Case{PSD_BITMAP, 1, 1, 0, "000000 ffffff"},
             Case{PSD_DUOTONE, 8, 2, 0, "101010 111111"},
             Case{PSD_INDEXED, 8, 1, 0, "313233 343536"},
             Case{PSD_INDEXED, 16, 1, 0, "0a0b0c 0a0b0c"},
             Case{PSD_INDEXED, 1, 1, 0, "010203 040506"},
             Case{PSD_INDEXED, 8, 1, 1, "101010 111111"},
             Case{PSD_RGB, 8, 3, 0, "102030 112131"},
             Case{PSD_RGB, 16, 3, 0, "102030 112131"},
             Case{PSD_RGB, 1, 3, 0, "000000 010101"},
             Case{PSD_RGB, 8, 2, 0, "102000 112100"},
             Case{PSD_RGB, 8, 4, 4, "404040 414141"},
             Case{PSD_RGB, 16, 4, 2, "202020 212121"},
             Case{PSD_RGB, 1, 4, 4, "000000 ffffff"},
             Case{PSD_CMYK, 8, 3, 0, "102030 112131"},
             Case{PSD_CMYK, 8, 4, 0, "04080c 04080c"},
             Case{PSD_CMYK, 16, 4, 0, "04080c 04080c"},
             Case{PSD_LAB, 8, 3, 0, ""},
             Case{PSD_LAB, 8, 3, 2, "202020 212121"},
             Case{PSD_MULTICHANNEL, 8, 2, 0, ""},
             Case{PSD_MULTICHANNEL, 8, 2, 1, "101010 111111"},
             Case{PSD_RGB, 8, 2, 3, ""},  // a colour that the file lacks
         }) {
        Shown shown;
        shown.document.m_nDocType = DOC_PSD;
        Fill(shown.document.m_Psd, c.mode, c.depth, c.channels);
        shown.Select(0, c.channel);
        EXPECT_EQ(shown.Colours(), c.colours)
            << "mode " << c.mode << ", depth " << c.depth << ", channel " << c.channel;
        EXPECT_EQ(shown.image.m_bValid, 1u);
        EXPECT_EQ(shown.image.m_nColours, c.mode == PSD_INDEXED ? 256u : 0u);
    }
}

TEST(PsdPicture, LayersAreShownByTheIdsOfTheirChannels) {
    Shown shown;
    shown.document.m_nDocType = DOC_PSD;
    PsdImage& psd = shown.document.m_Psd;
    Fill(psd, PSD_CMYK, 16, 4);  // has no say in what a layer shows
    PsdLayer& layer = AddLayer(psd, "");
    // One column, two rows, across the image's edge; the differences of the edges are unsigned.
    layer.m_nTop = 0x7FFFFFFF;
    layer.m_nBottom = static_cast<i32>(0x80000001);
    layer.m_nLeft = -1;
    layer.m_nRight = 0;
    layer.m_nMaskRight = 3;
    layer.m_nMaskBottom = 1;
    u8 samples[5][3] = {{1, 2}, {3, 4}, {5, 6}, {7, 8, 9}, {10, 11}};
    std::vector<std::vector<u8*>> tables;
    const auto add = [&](i32 id, u8* plane, u32 columns) {
        tables.push_back({plane, plane + columns});
        AddChannel(layer, id).m_ppPlane = tables.back().data();
    };
    tables.reserve(5);
    add(2, samples[0], 1);
    add(0, samples[1], 1);
    add(-1, samples[2], 1);
    add(-2, samples[3], 3);
    add(0, samples[4], 1);  // takes the place of the earlier red

    shown.Select(1, 0);
    EXPECT_EQ(shown.Colours(), "0a0001 0b0002");
    EXPECT_EQ(shown.image.InfoText(), "1x2x0");
    shown.Select(1, 3);
    EXPECT_EQ(shown.Colours(), "050505 060606");
    layer.m_bHasMask = true;
    shown.Select(1, 4);
    EXPECT_EQ(shown.Colours(), "070707 080808 090909");
    EXPECT_EQ(shown.image.InfoText(), "3x1x0");
    layer.m_bHasMask = false;
    shown.Select(1, 4);
    EXPECT_EQ(shown.image.InfoText(), "1x2x0") << "without mask data the layer's size counts";
}

}  // namespace
