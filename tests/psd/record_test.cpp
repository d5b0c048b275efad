#include "psd/psd_case.h"
#include "support/psd_builder.h"

#include <gtest/gtest.h>

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

TEST(Resource, ShapeIsJudged) {
    const auto with = [](PsdResourceFields resource) -> PsdFields { return {.resources = {resource}}; };
    const Bytes names = ByteBuilder().Text("\7Channel\4Mask");
    ExpectPairs({
        {"signature", with({.id = 1006}), with({.signature = "8BIN"})},
        {"largest data", with({.data = Bytes(16777215)}), with({.data = Bytes(16777216)})},
        {"names, 1 short", with({.id = 1006, .data = names}), with({.id = 1006, .data = Truncated(names, 1)})},
    });
}

TEST(Resource, WritesWhatItRead) {
    const Bytes read = ByteBuilder().U8(0, 3, 'a', 0, 'b', 255).Repeat(255, 'x');
    const Bytes left = ByteBuilder().U8(0, 1, 'a', 255).Repeat(255, 'x');  // a name ends at its first zero
    for (const auto& [id, written] : {std::pair{PSD_RESOURCE_ALPHA_NAMES, left}, {1000, read}}) {
        const LoadedPsd loaded({.resources = {{.id = id, .data = read}}});
        MemoryFile file;
        CArchive archive(&file, CArchive::store);
        ArchiveByteStream stream(&archive, 4);
        EXPECT_TRUE(loaded.image.m_Resources.GetAt(0)->m_pData->Write(stream));
        stream.Close();
        EXPECT_EQ(file.m_bytes, written) << id;
    }
}
