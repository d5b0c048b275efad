#include "psd/psd_image.h"
#include "support/failing_new.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/table.h"

#include <gtest/gtest.h>

TEST(LoadPsd, EverythingIsReadInItsOrder) {
    const LoadedPsd loaded(LayeredPsd());
    ASSERT_TRUE(loaded.bLoaded);
    std::string text = Description(loaded.image);
    const u64 palette = text.find("merged") + 6;
    EXPECT_EQ(text.substr(palette, 46), " 0 80 160 0 80 160 0 80 160 0 80 160 1 81 161 ");
    EXPECT_EQ(text.erase(palette, text.find('\n') - palette),
        "1 2 3 8 2 merged\n"
        "resource  1006 6 \n"
        "resource raw 1000 3 \n"
        "layer first -1 2 1 5 254 -1 240 \n"
        " channel -1 range 68 83 84 48 | 1 2 3 | 4 5 6 \n"
        " channel 0 range 68 83 84 49 | 7 7 7 | 7 8 9 \n"
        " channel -2 range 0 0 255 255 | 10 11 \n"
        "layer  0 0 1 1 255 0 0 \n"
        " channel -2 range 0 0 255 255 | 12 \n"
        "mask 65534 4660 128 \n"
        "mask 43690 43690 170 \n"
        "planes 1 1 1 | 1 2 3 ");
}

// Each has sizes far beyond its data. With so little memory, asking for what would hold that data fails.
TEST(LoadPsd, NothingIsMadeOnTheWordOfAFile) {
    const auto composite = [](u32 nDepth, u32 nCompression) -> PsdFields {
        return {.channels = 24,
            .rows = 1000,
            .columns = 30000,
            .depth = nDepth,
            .compression = nCompression,
            .samples = Bytes(24 * 2 * 1000, 1)};
    };
    const auto channel = [](Bytes data, i32 nExcess) -> PsdFields {
        return {.layers = {{.bottom = 1000, .right = 2000, .channels = {{.data = data, .excess = nExcess}}}}};
    };
    const Bytes rows = PackedData(std::vector<Bytes>(1000, {0xFE, 1}));
    for (const auto& [fields, rule] : Table<PsdFields, Rule>{
             {composite(8, 0), Rule::DataEnds},
             {composite(16, 0), Rule::DataEnds},
             {composite(1, 0), Rule::DataEnds},
             {composite(8, 1), Rule::DataEnds},
             {channel(RawData({1, 2}), 2'000'000 - 2), Rule::DataEnds},
             {channel({0, 1, 0, 2}, 2000), Rule::DataEnds},
             {channel(rows, 0), Rule::PsdTooFewPackedBytes},
         }) {
        const Bytes bytes = Psd(fields);
        const MemoryLimit limit(24 * 2 * 1000);
        EXPECT_EQ(LoadedPsd(bytes).image.GetFinding().rule, rule) << "depth " << fields.depth;
    }
}

TEST(LoadPsd, WithoutMemoryTheDocumentIsRefused) {
    const Bytes bytes = Psd(LayeredPsd());
    for (const bool once : {false, true}) {
        bool failed = true;
        for (u64 succeeding = 0; failed; ++succeeding) {
            MemoryStream source(bytes);
            PsdImage image;
            bool loaded = false;
            {
                const FailingNew failing(succeeding, once);
                loaded = image.LoadPsd(&source.stream);
                failed = FailingNew::HasFailed();
            }
            ASSERT_EQ(loaded, !failed) << succeeding;
            EXPECT_EQ(image.GetFinding().rule, failed ? Rule::NotEnoughMemory : Rule::None) << succeeding;
            ASSERT_LT(succeeding, 1000u);
        }
    }
    LoadedPsd loaded(PsdFields{.channels = 3, .rows = 4, .columns = 50, .depth = 16});
    for (const u64 size : {8 * 3 * 4 - 1, 2 * 3 * 4 * 50 - 1}) {  // of the row table, of the samples
        EXPECT_TRUE(loaded.image.AllocatePlanes());
        const MemoryLimit limit(size);
        EXPECT_FALSE(loaded.image.AllocatePlanes() || loaded.image.m_pppPlanes) << size;
    }
    const Bytes layered = Psd({.layers = {{.right = 2000, .channels = {{.data = RawData(Bytes(2000))}}}}});
    const MemoryLimit limit(1999);
    const LoadedPsd without(layered);
    EXPECT_EQ(without.image.GetFinding().place, Place::Channel);
    EXPECT_EQ(without.image.GetFinding().rule, Rule::NotEnoughMemory);
    EXPECT_FALSE(without.image.m_Layers.GetAt(0)->m_Channels.GetAt(0)->m_ppPlane);
}

TEST(LoadPsd, ACutDocumentIsRefusedAndTheNextOneIsWhole) {
    const Bytes whole = Psd(LayeredPsd());
    const std::string fresh = Description(LoadedPsd(whole).image), plain = Description(LoadedPsd(PsdFields()).image);
    PsdImage image;
    for (u64 size = 0; size < whole.size(); ++size) {
        MemoryStream cut(Truncated(whole, whole.size() - size)), broken(whole), again(whole), last(Psd({}));
        broken.file.m_nThrowAt = size;
        ASSERT_FALSE(image.LoadPsd(&cut.stream)) << size;
        ASSERT_EQ(image.GetFinding().rule, Rule::DataEnds) << size;
        ASSERT_EQ(image.GetFinding().nPosition, size);
        ASSERT_FALSE(image.LoadPsd(&broken.stream)) << size;
        ASSERT_EQ(image.GetFinding().rule, Rule::SourceFailed) << size;
        ASSERT_TRUE(image.LoadPsd(&again.stream));
        ASSERT_EQ(Description(image), fresh) << size;
        ASSERT_TRUE(image.LoadPsd(&last.stream));
        ASSERT_EQ(Description(image), plain) << "nothing is left of the document before";
    }
}

TEST(LoadPsd, Extremes) {
    const std::string longest(255, 'n');
    const LoadedPsd named({.resources = {{.name = longest}, {}}, .layers = {{.name = longest}, {.name = "x"}}});
    ASSERT_TRUE(named.bLoaded);
    EXPECT_EQ(named.image.m_Resources.GetAt(0)->m_pszName.get(), longest);
    EXPECT_EQ(named.image.m_Layers.GetAt(0)->m_pszName.get(), longest);
    EXPECT_STREQ(named.image.m_Layers.GetAt(1)->m_pszName.get(), "x");

    PsdFields many = {.layerCount = -32768};
    many.layers.resize(32768);
    EXPECT_EQ(LoadedPsd(many).image.m_Layers.GetCount(), 32768u);
    EXPECT_TRUE(LoadedPsd({.layers = {{}}, .sectionExcess = 77}).bLoaded) << "this length bounds nothing";
    EXPECT_TRUE(LoadedPsd({.layers = {{.channels = {{.id = -2, .data = RawData({1})}}}}}).bLoaded) << "without a mask";
}

// The length of the colour mode data leads back to byte 4, where version and reserved bytes make the length of
// the resources; the one resource begins with the other reserved bytes and has the rest of the header in it.
TEST(LoadPsd, TheColourModeDataMayLeadBackwards) {
    ByteBuilder file;
    file.Text("8BPS").U16(1, 12).Text("8BIM").U16(1).U32(1, 1).U16(8, PSD_GREYSCALE).U32(0xFFFFFFE6);
    file.Repeat(20 + 65536 - file.size(), 0).U32(0).U16(0).U8(77);
    const LoadedPsd loaded(file);
    ASSERT_TRUE(loaded.bLoaded);
    EXPECT_EQ(loaded.image.m_Resources.GetAt(0)->m_pData->GetSize(), 65536u);
    EXPECT_EQ(loaded.image.m_pppPlanes[0][0][0], 77);
}

TEST(Resource, WritesTheNamesThatItRead) {
    const LoadedPsd loaded({.resources = {{.id = 1006, .data = {0, 3, 'a', 0, 'b', 1, 'c'}}}});
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    ArchiveByteStream stream(&archive, 4);
    EXPECT_TRUE(loaded.image.m_Resources.GetAt(0)->m_pData->Write(stream));
    stream.Close();
    EXPECT_EQ(file.m_bytes, (Bytes{0, 1, 'a', 1, 'c'})) << "a name ends at its first zero";
}
