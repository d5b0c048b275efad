#include "psd/psd_case.h"
#include "support/psd_builder.h"

#include <gtest/gtest.h>

namespace {

TEST(LayerRecord, ShapeIsJudged) {
    auto with = [](PsdLayerFields layer) -> PsdFields { return {.layers = {layer}}; };
    const PsdChannelFields grey = {.data = RawData({1})};
    ExpectLoads({{"plain", with({.channels = {grey}}), true},
                 {"signature", with({.signature = "8BIN"}), false},
                 {"mask of 19", with({.mask = Bytes(19)}), false},
                 {"mask of 20", with({.mask = Bytes(20)}), true},
                 {"mask of 36", with({.mask = Bytes(36)}), false},
                 {"longer extra data", with({.channels = {grey}, .extra = Bytes(5)}), true},
                 {"extra data 1 short", with({.name = "abc", .extraExcess = -1}), false}});
    for (const auto& [length, reads] : {std::pair{16777215u, true}, {16777216u, false}}) {
        MemoryStream source(ByteBuilder().U16(0).U32(length));
        EXPECT_EQ(PsdLayerChannel().ReadChannelInfo(source.stream), reads) << length;
    }
}

// Names of every padding, and one with a zero byte inside, where it ends.
TEST(Names, ArePaddedByTheirLengthInTheFile) {
    for (const std::string& name : {std::string(), std::string("a"), std::string("abcd"),
                                    std::string("ab\0cd", 5), std::string(255, 'x')}) {
        const LoadedPsd loaded(
            {.resources = {{.id = 0xFFFF, .name = name, .data = Bytes(5)}, {.data = Bytes(6)}},
             .layers = {{.name = name}, {.name = "next"}}});
        ASSERT_TRUE(loaded.bLoaded) << name;
        EXPECT_STREQ(loaded.image.m_Resources.GetAt(0)->m_pszName.get(), name.c_str());
        EXPECT_STREQ(loaded.image.m_Layers.GetAt(0)->m_pszName.get(), name.c_str());
    }
}

TEST(Resource, ShapeIsJudged) {
    const Bytes names = ByteBuilder().U8(7).Text("Channel").U8(4).Text("Mask");
    auto with = [](PsdResourceFields resource) -> PsdFields { return {.resources = {resource}}; };
    ExpectLoads({{"signature", with({.signature = "8BIN"}), false},
                 {"largest data", with({.data = Bytes(16777215)}), true},
                 {"larger data", with({.data = Bytes(16777216)}), false},
                 {"names", with({.id = 1006, .data = names}), true},
                 {"names, 1 short", with({.id = 1006, .data = names, .excess = -1}), false},
                 {"names, 1 long", with({.id = 1006, .data = names, .excess = 1}), false},
                 {"no names", with({.id = 1006}), true}});
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
    const Bytes bytes = ByteBuilder().U8(0).U8(3).Text("a").U8(0).Text("b").U8(255).Repeat(255, 'x').U8(0);
    MemoryStream source(bytes);
    PsdAlphaNamesData names;
    ASSERT_TRUE(names.Read(source.stream, static_cast<u32>(bytes.size())));
    std::vector<std::string> read;
    for (u32 i = 0; i < names.m_Names.GetCount(); ++i) read.push_back(names.m_Names.GetAt(i));
    EXPECT_EQ(read, (std::vector<std::string>{"", "a", std::string(255, 'x'), ""}));
    const Bytes left = ByteBuilder().U8(0).U8(1).Text("a").U8(255).Repeat(255, 'x').U8(0);
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
