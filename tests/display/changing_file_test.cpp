// Another program changes the file while it is being read.
#include "display/catalogue.h"
#include "framework/core/exception.h"
#include "framework/core/regular_file.h"
#include "support/iff_builder.h"
#include "support/psd_builder.h"
#include "support/shown.h"
#include "support/table.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>

namespace {

constexpr u32 WIDTH = 512;
constexpr u32 HEIGHT = 400;
constexpr u8 BEFORE = 0x11;  // the shade of every pixel of the old file
constexpr u8 AFTER = 0x22;   // and of the new one, which is as long

// A chain of pictures, each larger than what is read at once.
Bytes Chain(u8 nShade) {
    const Bytes rows(WIDTH / 8 * HEIGHT, nShade == BEFORE ? 0x00 : 0xFF);
    const Bytes filler = Chunk("JUNK", Bytes(CRegularFile::WINDOW_SIZE));
    const Bytes form =
        Form("ILBM", {Bmhd({.width = WIDTH, .height = HEIGHT}), Cmap({{BEFORE, BEFORE, BEFORE}, {AFTER, AFTER, AFTER}}),
                         filler, Body(rows), Chunk("JUNK", Bytes(3001))});
    return List("ILBM", {form, Form("MIPM", {Chunk("CONT", {1, 0})}), List("ILBM", {form})});
}

Bytes Layers(u8 nShade) {
    const Bytes samples(WIDTH * HEIGHT, nShade);
    const Bytes few = PackedData({Bytes{1, nShade, nShade}});
    const PsdLayerFields large = {.bottom = HEIGHT,
        .right = WIDTH,
        .channels = {{.id = 0, .data = RawData(samples)}, {.id = 1, .data = RawData(samples)},
            {.id = 2, .data = RawData(samples)}}};
    const PsdLayerFields small = {
        .right = 2, .channels = {{.id = 0, .data = few}, {.id = 1, .data = few}, {.id = 2, .data = few}}};
    return Psd({.rows = HEIGHT, .columns = WIDTH, .layers = {large, small}, .samples = samples});
}

struct Change {
    const char* pszName;
    std::function<void(const TempFolder&, const Bytes& after)> make;
    bool bMayRefuse;
    bool bShowsAfter;
};

const Change CHANGES[] = {
    {"truncated to nothing",
        [](const TempFolder& folder, const Bytes&) { std::filesystem::resize_file(folder.Path("file"), 0); }, true,
        false},
    {"truncated to half",
        [](const TempFolder& folder, const Bytes& after) {
            std::filesystem::resize_file(folder.Path("file"), after.size() / 2);
        },
        true, false},
    {"overwritten",
        [](const TempFolder& folder, const Bytes& after) {
            std::fstream(folder.Path("file"), std::ios::binary | std::ios::in | std::ios::out)
                .write(reinterpret_cast<const char*>(after.data()), static_cast<std::streamsize>(after.size()));
        },
        false, true},
    {"unlinked", [](const TempFolder& folder, const Bytes&) { std::filesystem::remove(folder.Path("file")); }, false,
        false},
    {"replaced",
        [](const TempFolder& folder, const Bytes& after) {
            std::filesystem::rename(folder.Write(after, "other"), folder.Path("file"));
        },
        false, false},
};

// What is read while the file changes just before the nth of its reads, from 0 on.
struct ReadThroughChange {
    ReadThroughChange(const Bytes& before, const Bytes& after, const Change& change, u32 nAt, Tolerance tolerance) {
        const TempFolder folder;
        CRegularFile file(folder.Write(before));
        u32 reads = 0;
        CRegularFile::s_beforeRead = [&] {
            if (reads++ != nAt) return;
            change.make(folder, after);
            bChanged = true;
        };
        document.m_tolerance = tolerance;
        CArchive archive(&file, CArchive::load);
        try {
            document.Serialize(archive);
            bAccepted = true;
        } catch (const CException&) {
        }
        CRegularFile::s_beforeRead = nullptr;
    }

    CVistrelDoc document;
    bool bChanged = false;
    bool bAccepted = false;
};

// Whether all components are the old file's, or the new one's where it may show. The pixels of one byte are of
// one file.
bool IsOfTheFiles(const GdiBitmap& bitmap, u32 nPixelsOfByte, bool bMayBeNew) {
    std::vector<u32> row(bitmap.nWidth);
    for (u32 y = 0; y < bitmap.nHeight; ++y) {
        bitmap.ReadPixels(y, 0, bitmap.nWidth, row.data());
        for (u32 x = 0; x < bitmap.nWidth; ++x) {
            if (row[x] != row[x / nPixelsOfByte * nPixelsOfByte]) return false;
            for (u32 component = 0; component < 3; ++component) {
                const u32 shade = row[x] >> component * 8 & 0xFF;
                if (shade != BEFORE && !(shade == AFTER && bMayBeNew)) return false;
            }
        }
    }
    return true;
}

TEST(ChangingFile, IsRefusedOrShowsTheBytesThatWereRead) {
    for (const auto& [builder, pixelsOfByte] : Table<Bytes (*)(u8), u32>{{Chain, 8}, {Layers, 1}})
        for (const Tolerance tolerance : {Tolerance::None, Tolerance::Always})
            for (const Change& change : CHANGES) {
                const Bytes before = builder(BEFORE);
                const Bytes after = builder(AFTER);
                bool changed = true;
                u32 refused = 0;
                for (u32 at = 0; changed; ++at) {
                    SCOPED_TRACE(std::string(change.pszName) + " before read " + std::to_string(at));
                    const ReadThroughChange read(before, after, change, at, tolerance);
                    changed = read.bChanged;
                    refused += !read.bAccepted;
                    ASSERT_TRUE(read.bAccepted || (changed && change.bMayRefuse));
                    ASSERT_LT(at, 100u);
                    if (!read.bAccepted) continue;
                    DisplayImage image;
                    const u32 layers = static_cast<u32>(LayerNames(read.document).size());
                    for (u32 layer = 0; layer < layers; ++layer)
                        for (u32 channel = 0; channel < image.ChooseLayer(read.document, layer).size(); ++channel) {
                            image.BuildBitmap(read.document, {layer, channel});
                            ASSERT_TRUE(image.m_hBitmap);
                            ASSERT_TRUE(IsOfTheFiles(*image.m_hBitmap, pixelsOfByte, change.bShowsAfter))
                                << layer << ", " << channel;
                        }
                }
                EXPECT_EQ(refused > 1, change.bMayRefuse) << change.pszName << refused;
            }
}

}  // namespace
