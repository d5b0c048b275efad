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
    for (const std::string& name :
        {std::string(), std::string("a"), std::string("abcd"), std::string("ab\0cd", 5), std::string(255, 'x')}) {
        const LoadedPsd loaded({.resources = {{.id = 0xFFFF, .name = name, .data = Bytes(5)}, {.data = Bytes(6)}},
            .layers = {{.name = name}, {.name = "next"}}});
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

// What a payload writes over a small buffer; nothing when it says that it cannot.
std::optional<Bytes> Written(const PsdResourceData& data, bool bBreaks = false) {
    MemoryFile file;
    file.m_bThrowOnWrite = bBreaks;
    CArchive archive(&file, CArchive::store);
    ArchiveByteStream stream(&archive, 4);
    const bool written = data.Write(stream);
    stream.Close();
    return written ? std::optional(file.m_bytes) : std::nullopt;
}

TEST(AlphaNames, KeepTheirOrderAndWriteWhatIsLeftOfThem) {
    const Bytes bytes = ByteBuilder().U8(0, 3, 'a', 0, 'b', 255).Repeat(255, 'x').U8(0);
    MemoryStream source(bytes);
    PsdAlphaNamesData names;
    ASSERT_TRUE(names.Read(source.stream, static_cast<u32>(bytes.size())));
    std::vector<std::string> read;
    for (u32 i = 0; i < names.m_Names.GetCount(); ++i) read.push_back(names.m_Names.GetAt(i));
    EXPECT_EQ(read, (std::vector<std::string>{"", "a", std::string(255, 'x'), ""}));
    const Bytes left = ByteBuilder().U8(0, 1, 'a', 255).Repeat(255, 'x').U8(0);
    EXPECT_EQ(names.GetSize(), left.size());
    EXPECT_EQ(Written(names), left);
    EXPECT_FALSE(Written(names, true));
}

TEST(RawResource, WritesWhatItRead) {
    PsdRawResourceData raw;
    EXPECT_FALSE(Written(raw)) << "nothing read yet";
    MemoryStream source(Bytes{1, 2, 3, 4, 5});
    raw.Read(source.stream, 5);
    EXPECT_EQ(Written(raw), source.file.m_bytes);
    EXPECT_FALSE(Written(raw, true));
}

}  // namespace
