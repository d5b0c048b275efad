#include "display/thumbnail.h"

#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/random.h"
#include "support/shown.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// The mean of a source in which each pixel is so many times as wide and high that no area cuts one.
Bytes MeanOfParts(const GdiBitmap& bitmap, const SideLengths& sides) {
    Bytes means;
    for (u32 y = 0; y < sides.nHeight; ++y)
        for (u32 x = 0; x < sides.nWidth; ++x)
            for (const u32 shift : {16, 8, 0}) {
                u64 sum = 0;
                for (u32 row = 0; row < bitmap.nHeight; ++row)
                    for (u32 column = 0; column < bitmap.nWidth; ++column)
                        sum += PixelOf(bitmap, (x * bitmap.nWidth + column) / sides.nWidth,
                                   (y * bitmap.nHeight + row) / sides.nHeight) >>
                                   shift &
                               0xFF;
                const u64 parts = u64{bitmap.nWidth} * bitmap.nHeight;
                means.push_back(static_cast<u8>((2 * sum + parts) / (2 * parts)));
            }
    return means;
}

Bytes Shrunk(const GdiBitmap& bitmap, u32 nMost) {
    Shrinker shrinker(nMost);
    shrinker.Take(bitmap, 0, bitmap.nHeight);
    EXPECT_TRUE(shrinker.IsWhole());
    const LargeBlock pixels = shrinker.TakePixels();
    return Bytes(pixels.Data(), pixels.Data() + pixels.Size());
}

TEST(Shrink, EachPixelIsTheMeanOfItsArea) {
    for (const auto& [width, height] : Table<u32, u32>{{7, 5}, {5, 7}, {12, 12}, {3, 40}})
        for (const auto& [mode, channels, bits] :
            Table<u32, u32, u32>{{PSD_RGB, 3, 24}, {PSD_GREYSCALE, 1, 8}, {PSD_INDEXED, 1, 8}}) {
            PsdFields fields = {.channels = channels, .rows = height, .columns = width, .mode = mode};
            fields.samples = Random(1).SomeBytes(channels * width * height);
            if (mode == PSD_INDEXED) fields.colourData = Random(2).SomeBytes(768);
            const Shown shown(Psd(fields));
            ASSERT_EQ(shown.image.m_hBitmap->header.biBitCount, bits);
            for (u32 most = 1; most <= std::max(width, height); ++most)
                EXPECT_EQ(Shrunk(*shown.image.m_hBitmap, most),
                    MeanOfParts(*shown.image.m_hBitmap, FitInto({width, height}, most)))
                    << "mode " << mode << ", " << width << " x " << height << " into " << most;
        }
}

TEST(Shrink, HalfAShadeIsRoundedUp) {
    for (const auto& [width, height] : Table<u32, u32>{{2, 49}, {7, 14}, {4, 49}, {11, 34}, {2, 2}}) {
        // As many ones as twos.
        Bytes samples(width * height, 1);
        std::fill_n(samples.begin(), samples.size() / 2, u8{2});
        const Shown shown(Psd({.rows = height, .columns = width, .samples = samples}));
        EXPECT_EQ(Shrunk(*shown.image.m_hBitmap, 1), Bytes(3, 2)) << width << " x " << height;
    }
}

// Sums of so many rows, and of so many columns, do not fit into fewer bits than they have.
TEST(Shrink, LongSidesOverflowNothing) {
    for (const u32 length : {256u, 257u, 258u, 514u, 515u, 30000u})
        for (const bool isWide : {false, true}) {
            const u32 columns = isWide ? length : 2, rows = isWide ? 2 : length;
            const PsdFields fields = {
                .channels = 3, .rows = rows, .columns = columns, .mode = PSD_RGB, .samples = Bytes(6 * length, 255)};
            const Shown shown(Psd(fields));
            EXPECT_EQ(Shrunk(*shown.image.m_hBitmap, 1), Bytes(3, 255)) << length;
        }
}

TEST(Shrink, FitsIntoASquareAndNeverGrows) {
    for (const auto& [width, height, most, fittedWidth, fittedHeight] :
        Table<u32, u32, u32, u32, u32>{{100, 50, 100, 100, 50}, {100, 50, 200, 100, 50}, {101, 50, 100, 100, 50},
            {50, 100, 10, 5, 10}, {30000, 1, 128, 128, 1}, {1, 300000, 256, 1, 256}, {3, 2, 1, 1, 1}}) {
        const SideLengths fitted = FitInto({width, height}, most);
        EXPECT_EQ(fitted.nWidth, fittedWidth) << width << " x " << height;
        EXPECT_EQ(fitted.nHeight, fittedHeight) << width << " x " << height;
    }
}

// Pictures of each kind, one band and several high, in the bands that they are handed over in.
TEST(Thumbnail, IsThatOfTheBitmap) {
    constexpr u32 COLUMNS = 9;
    for (const u32 height : {1u, 15u, 16u, 17u, 18u, 33u, 48u}) {
        const u32 blocks = (COLUMNS + 3) / 4 * ((height + 3) / 4);
        const auto psd = [height](u32 nMode, u32 nChannels) {
            PsdFields fields = {.channels = nChannels, .rows = height, .columns = COLUMNS, .mode = nMode};
            fields.samples = Random(3).SomeBytes(nChannels * height * COLUMNS);
            if (nMode == PSD_INDEXED) fields.colourData = Random(4).SomeBytes(768);
            return Psd(fields);
        };
        const Bytes body = Body(Random(5).SomeBytes(2 * 8 * height));
        for (const Bytes& bytes : {psd(PSD_RGB, 3), psd(PSD_INDEXED, 1), psd(PSD_GREYSCALE, 1), psd(PSD_CMYK, 4),
                 Form("ILBM", {Bmhd({.width = COLUMNS, .height = height, .planes = 8}), GreyCmap(256), body}),
                 Form("ILBM", {S3tc({.code = "DXT1",
                              .width = COLUMNS,
                              .height = height,
                              .data = Random(6).SomeBytes(blocks * 8)})})}) {
            const Shown shown(bytes);
            for (const u32 most : {64u, 5u}) {
                const Thumbnail thumbnail = ThumbnailOf(shown.document, most);
                EXPECT_EQ(Bytes(thumbnail.pixels.Data(), thumbnail.pixels.Data() + thumbnail.pixels.Size()),
                    Shrunk(*shown.image.m_hBitmap, most))
                    << height << " rows into " << most;
            }
        }
    }
}

std::string TextOf(const Thumbnail& thumbnail) {
    if (!thumbnail.pixels) return "nothing";
    const auto sides = [](const SideLengths& lengths) {
        return std::to_string(lengths.nWidth) + "x" + std::to_string(lengths.nHeight);
    };
    return sides(thumbnail.sides) + " of " + sides(thumbnail.original) + ": " +
           std::to_string(*thumbnail.pixels.Data());
}

PsdLayerFields Layer(i32 nRight, u8 nRed) {
    PsdLayerFields layer = {.right = nRight, .name = "layer"};
    layer.channels = {{.id = 0, .data = RawData(Bytes(nRight, nRed))}};
    return layer;
}

TEST(Thumbnail, ShowsTheCompositeOrTheLargestLayer) {
    PsdFields document = {.channels = 3, .columns = 4, .mode = PSD_RGB, .samples = Bytes(12, 9)};
    PsdFields layered = document;
    layered.layers = {Layer(2, 10), Layer(3, 20), Layer(1, 30)};
    PsdFields withoutColours = layered;
    withoutColours.layers.push_back({.bottom = 30, .right = 30});
    withoutColours.layers.push_back(
        {.bottom = 40, .right = 40, .channels = {{.id = -1, .data = RawData(Bytes(1600))}}});
    const auto unmerged = [](PsdFields fields) {
        fields.resources = {{.id = 1057, .data = Bytes(5)}};
        return Psd(fields);
    };
    PsdFields lab = layered, bare = {.channels = 3, .columns = 4, .mode = PSD_LAB};
    lab.mode = PSD_LAB;
    const Bytes empty = Form("ILBM", {Chunk("CMAP", {1, 2, 3})});
    const Bytes pixel = Form("ILBM", {Bmhd({.width = 5, .height = 1}), Cmap({{7, 7, 7}}), Body({0, 0})});
    const Bytes levels =
        List("ILBM", {Form("MIPM", {Chunk("CONT", {2, 0})}), List("ILBM", {empty}), List("ILBM", {pixel})});
    for (const auto& [bytes, text] : Table<Bytes, std::string>{
             {Psd(document), "4x1 of 4x1: 9"},
             {Psd(layered), "4x1 of 4x1: 9"},
             {unmerged(layered), "3x1 of 4x1: 20"},
             {unmerged(withoutColours), "3x1 of 4x1: 20"},
             {unmerged(document), "4x1 of 4x1: 9"},
             {Psd(lab), "3x1 of 4x1: 20"},
             {Psd(bare), "nothing"},
             {pixel, "5x1 of 5x1: 7"},
             {empty, "nothing"},
             {levels, "5x1 of 5x1: 7"},
         })
        EXPECT_EQ(TextOf(ThumbnailOf(Shown(bytes, 0, 0, Tolerance::Always).document, 100)), text);
    EXPECT_EQ(TextOf(ThumbnailOf(Shown(Psd(document)).document, 2)), "2x1 of 4x1: 9");
}

}  // namespace
