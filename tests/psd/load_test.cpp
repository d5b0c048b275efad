#include "psd/psd_image.h"
#include "support/memory_limit.h"
#include "support/psd_builder.h"
#include "support/table.h"

#include <gtest/gtest.h>

// Documents, the rules that read them, and what these make of them.
static Table<Bytes, ReadingRules, std::string> WholeDocuments() {
    return {
        {Psd(LayeredPsd()), STRICT,
            " | r1006 r1000 first(-1:1,2,3/4,5,6 0:7,7,7/7,8,9 -2:10,11) (-2:12) m128 m170 = 1,1,1/1,2,3"},
        {Psd(LargePsd()), TOLERANT,
            "version 2; foreign resources; empty layers; ZIP channels (2); layers of more than 8 bits; "
            "loose PackBits rows; global mask of another length; tagged blocks; PackBits of 1, 16 or 32 bits | r1000 "
            "a name too long to be kept in place(1:1,1,1/1,1,1 1:1,2,3/1,2,3 0:3,3,3/4,4,4 -2:1,3,5/7,9,11) "
            "a name too long to be kept in place() m0 = 257,257,257/514,514,514"},
    };
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

TEST(LoadPsd, WithoutMemoryForSamplesThereIsNoPlane) {
    LoadedPsd loaded(PsdFields{.channels = 3, .rows = 4, .columns = 50, .depth = 16});
    const u64 size = 2 * 3 * 4 * 50 + 2 * (8 * 3 * 4) + 8 * 3;  // samples, tables of rows as bytes and as words, planes
    for (const u64 most : {size - 1, size}) {
        const MemoryLimit limit(most);
        EXPECT_EQ(loaded.image.AllocatePlanes(), most == size);
        EXPECT_EQ(loaded.image.m_pppPlanes != nullptr, most == size);
    }
}

TEST(LoadPsd, ACutDocumentLeavesNothingBehind) {
    PsdImage image;
    for (const auto& [bytes, rules, whole] : WholeDocuments())
        for (u64 size = 0; size < bytes.size(); ++size) {
            MemoryStream cut(Truncated(bytes, bytes.size() - size));
            MemoryStream again(bytes);
            MemoryStream last(Psd({}));
            image.LoadPsd(&cut.stream, rules);
            if (!rules.bBrokenParts) {
                ASSERT_EQ(image.GetFinding().rule, Rule::DataEnds) << size;
                ASSERT_EQ(image.GetFinding().nPosition, size);
            }
            ASSERT_TRUE(image.LoadPsd(&again.stream, rules));
            ASSERT_EQ(Outcome(image), whole) << "after " << size << " bytes";
            ASSERT_TRUE(image.LoadPsd(&last.stream));
            ASSERT_EQ(Outcome(image), " | = 0") << "nothing is left of the document before";
            ASSERT_FALSE(image.m_pPalette || image.m_bMergedAlpha);
        }
}

TEST(LoadPsd, Extremes) {
    const std::string longest(255, 'n');
    const LoadedPsd named({.resources = {{.name = longest}, {}}, .layers = {{.name = longest}, {.name = "x"}}});
    ASSERT_TRUE(named.bLoaded);
    EXPECT_EQ(named.image.m_Resources.GetAt(0)->m_pszName.get(), longest);
    EXPECT_EQ(named.image.m_Layers.GetAt(0)->m_pszName.get(), longest);
    EXPECT_STREQ(named.image.m_Layers.GetAt(1)->m_pszName.get(), "x");

    const LoadedPsd layered(LayeredPsd());
    const PsdLayerChannel& unranged = *layered.image.m_Layers.GetAt(0)->m_Channels.GetAt(2);
    EXPECT_EQ(Bytes(unranged.m_DestRange.begin(), unranged.m_DestRange.end()), (Bytes{0, 0, 255, 255}));

    PsdFields many = {.layerCount = -32768};
    many.layers.resize(32768);
    EXPECT_EQ(LoadedPsd(many).image.m_Layers.GetCount(), 32768u);
    EXPECT_EQ(Outcome(Psd({.layers = {{}}, .sectionExcess = 77}), STRICT), " | () = 0") << "this length bounds nothing";
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
