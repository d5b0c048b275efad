#include "psd/psd_case.h"
#include "support/psd_builder.h"

#include <gtest/gtest.h>

namespace {

TEST(LayerRecord, ShapeIsJudged) {
    const auto with = [](PsdLayerFields layer) -> PsdFields { return {.layers = {layer}}; };
    ExpectPairs({
        {"signature", with({.channels = {{.data = RawData({1})}}, .extra = Bytes(5)}), with({.signature = "8BIN"})},
        {"mask of 19", with({.mask = Bytes(20)}), with({.mask = Bytes(19)})},
        {"mask of 36", with({.mask = Bytes(20)}), with({.mask = Bytes(36)})},
        {"extra data 1 short", with({.name = "abc"}), with({.name = "abc", .extraExcess = -1})},
    });
    for (const auto& [length, reads] : {std::pair{16777215u, true}, {16777216u, false}}) {
        MemoryStream source(ByteBuilder().U16(0).U32(length));
        EXPECT_EQ(PsdLayerChannel().ReadChannelInfo(source.stream), reads) << length;
    }
}

// Names of every padding, and one with a zero byte inside, where it ends.
TEST(Names, ArePaddedByTheirLengthInTheFile) {
    for (const std::string& name : {std::string("a"), std::string("ab\0cd", 5), std::string(255, 'x')}) {
        const LoadedPsd loaded({.resources = {{.name = name, .data = Bytes(5)}, {}}, .layers = {{.name = name}, {}}});
        ASSERT_TRUE(loaded.bLoaded) << name;
        EXPECT_STREQ(loaded.image.m_Resources.GetAt(0)->m_pszName.get(), name.c_str());
        EXPECT_STREQ(loaded.image.m_Layers.GetAt(0)->m_pszName.get(), name.c_str());
    }
}

TEST(Resource, ShapeIsJudged) {
    const auto with = [](PsdResourceFields resource) -> PsdFields { return {.resources = {resource}}; };
    const auto names = [&](i32 excess) {
        return with({.id = 1006, .data = ByteBuilder().Text("\7Channel\4Mask"), .excess = excess});
    };
    ExpectPairs({
        {"signature", with({.id = 1006}), with({.signature = "8BIN"})},
        {"largest data", with({.data = Bytes(16777215)}), with({.data = Bytes(16777216)})},
        {"names, 1 short", names(0), names(-1)},
        {"names, 1 long", names(0), names(1)},
    });
}

// What the payload of a resource reads from these bytes is written over a small buffer.
Bytes Rewritten(PsdResourceData& data, const Bytes& bytes, bool bBreaks = false) {
    MemoryStream source(bytes);
    EXPECT_TRUE(data.Read(source.stream, static_cast<u32>(bytes.size())));
    MemoryFile file;
    file.m_bBroken = bBreaks;
    CArchive archive(&file, CArchive::store);
    ArchiveByteStream stream(&archive, 4);
    EXPECT_EQ(data.Write(stream), !bBreaks);
    stream.Close();
    EXPECT_TRUE(bBreaks || file.m_bytes.size() == data.GetSize());
    return file.m_bytes;
}

TEST(Resource, WritesWhatItRead) {
    PsdAlphaNamesData names;
    const Bytes read = ByteBuilder().U8(0, 3, 'a', 0, 'b', 255).Repeat(255, 'x').U8(0);
    const Bytes left = ByteBuilder().U8(0, 1, 'a', 255).Repeat(255, 'x').U8(0);  // a name ends at its first zero
    EXPECT_EQ(Rewritten(names, read), left);
    ASSERT_EQ(names.m_Names.GetCount(), 4u);
    EXPECT_STREQ(names.m_Names.GetAt(1), "a");
    PsdRawResourceData raw;
    EXPECT_EQ(Rewritten(raw, {1, 2, 3, 4, 5}), (Bytes{1, 2, 3, 4, 5}));
    for (PsdResourceData* data : {static_cast<PsdResourceData*>(&names), static_cast<PsdResourceData*>(&raw)})
        EXPECT_EQ(Rewritten(*data, read, true), Bytes());
}

}  // namespace
