#include "psd/psd_case.h"

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

TEST(LoadPsd, HeaderKeepsToTheLimits) {
    ExpectPairs({
        {"signature", {}, {.signature = "9BPS"}},
        {"version", {.version = 1}, {.version = 2}},
        {"channels", {.channels = 24}, {.channels = 25}},
        {"no channels", {}, {.channels = 0}},
        {"rows", {.rows = 30000}, {.rows = 30001}},
        {"columns", {.columns = 1}, {.columns = 0}},
        {"depth", {.depth = 16}, {.depth = 32}},
    });
    for (u32 mode = 0; mode < 11; ++mode)
        EXPECT_EQ(LoadedPsd({.mode = mode, .colourData = Bytes(768)}).bLoaded, mode < 5 || (mode > 6 && mode < 10))
            << mode;
}

TEST(LoadPsd, SectionsEndWhereTheySay) {
    for (i32 PsdFields::*const excess :
        {&PsdFields::resourcesExcess, &PsdFields::layersExcess, &PsdFields::globalMasksExcess}) {
        for (const i32 by : {-1, 1}) {
            PsdFields fields = {.resources = {{.data = {1, 2, 3}}}, .layers = {{}}, .globalMasks = Bytes(14)};
            EXPECT_TRUE(LoadedPsd(fields).bLoaded);
            fields.*excess = by;
            EXPECT_FALSE(LoadedPsd(fields).bLoaded) << by;
        }
    }
    ExpectPairs({
        {"palette of 767", {.mode = 2, .colourData = Bytes(768)}, {.mode = 2, .colourData = Bytes(767)}},
        {"palette of 769", {.colourData = Bytes(769)}, {.mode = 2, .colourData = Bytes(769)}},
        {"layers padded", {.layers = {{}}, .layerPad = {9}}, {.layers = {{}}, .layerPad = {0, 0}}},
        {"masks of 16", {.globalMasks = Bytes(28)}, {.globalMasks = Bytes(16)}},
    });
    EXPECT_TRUE(LoadedPsd({.layers = {{}}, .sectionExcess = 77}).bLoaded) << "this length bounds nothing";
}

TEST(LoadPsd, CompositeComesInFourForms) {
    const auto with = [](u32 columns, u32 depth, u32 compression, Bytes samples) -> PsdFields {
        return {.rows = 2, .columns = columns, .depth = depth, .compression = compression, .samples = samples};
    };
    const PsdFields raw = with(2, 8, 0, {1, 2, 3, 4}), packed = with(3, 8, 1, {0, 2, 0, 4, 0xFE, 7, 2, 7, 8, 9});
    const PsdFields words = with(1, 16, 0, {1, 2, 3, 4}), bits = with(9, 1, 0, {1, 2, 3, 4});
    ExpectPairs({
        {"raw, 1 short", raw, with(2, 8, 0, {1, 2, 3})},
        {"words, 1 short", words, with(1, 16, 0, {1, 2, 3})},
        {"bits, 1 short", bits, with(9, 1, 0, {1, 2, 3})},
        {"count moved", packed, with(3, 8, 1, {0, 3, 0, 3, 0xFE, 7, 2, 7, 8, 9})},
        {"packed words", words, with(1, 16, 1, {0, 2, 0, 2, 0, 7, 0, 7})},
        {"packed bits", bits, with(2, 1, 1, {0, 2, 0, 2, 0xFF, 7, 0xFF, 7})},
        {"compression -1", raw, with(2, 8, 0xFFFF, {1, 2, 3, 4})},
    });
}

// Each has sizes far beyond its data; what would hold that data must not have been made.
TEST(LoadPsd, NothingIsMadeOnTheWordOfAFile) {
    for (const auto& [depth, compression] : {std::pair{8u, 0u}, {16u, 0u}, {1u, 0u}, {8u, 1u}}) {
        PsdFields fields = {.channels = 24, .rows = 1000, .columns = 30000, .depth = depth};
        fields.compression = compression, fields.samples = Bytes(24 * 2 * 1000, 1);
        const LoadedPsd loaded(fields);
        EXPECT_FALSE(loaded.bLoaded || loaded.image.m_pppPlanes) << depth << ' ' << compression;
    }
    MemoryStream data(Bytes(1000));
    PsdRawResourceData raw;
    EXPECT_FALSE(raw.Read(data.stream, 1001) || raw.m_pBytes);
    EXPECT_EQ(data.stream.m_nStatus, BS_END) << "as after reading";
    for (const Bytes& bytes : {RawData({1, 2}), PackedData({{0xFE, 1}})}) {
        MemoryStream image(bytes);
        PsdLayerChannel channel;
        channel.m_nLength = bytes[1] == 0 ? 2 + 2000 : static_cast<u32>(bytes.size());
        EXPECT_FALSE(channel.ReadChannelData(image.stream, 1, 2000) || channel.m_ppPlane);
    }
}

// Every record of 60 channels leads back to its own start; 32767 of them would fit into a kilobyte.
TEST(LoadPsd, RecordsOverOneAnotherMakeNoMoreChannelsThanTheDataHasRoomFor) {
    PsdLayerFields layer = {
        .channels = std::vector<PsdChannelFields>(60, {.data = RawData({1})}), .ranges = Bytes(8 + 60 * 8)};
    const i32 size = static_cast<i32>(LayerRecord(layer).size());
    layer.rangesExcess = -(size - 4 + 6);  // to the length of the layers, whose zeroes make an empty name
    layer.extraExcess = -size;
    const LoadedPsd loaded({.layers = {layer}, .layerCount = 32767});
    EXPECT_FALSE(loaded.bLoaded);
    EXPECT_GT(loaded.image.m_Layers.GetCount(), 1u);
    EXPECT_LT(loaded.image.m_Layers.GetCount(), 20u);
}

TEST(LoadPsd, ACutDocumentIsRefusedAndTheNextOneIsWhole) {
    const Bytes whole = Psd(LayeredPsd());
    const std::string fresh = Description(LoadedPsd(whole).image), plain = Description(LoadedPsd(PsdFields()).image);
    PsdImage image;
    for (u64 size = 0; size < whole.size(); ++size) {
        MemoryStream cut(Truncated(whole, whole.size() - size)), broken(whole), again(whole), last(Psd({}));
        broken.file.m_nThrowAt = size;
        ASSERT_FALSE(image.LoadPsd(&cut.stream) || image.LoadPsd(&broken.stream)) << size;
        ASSERT_TRUE(image.LoadPsd(&again.stream));
        ASSERT_EQ(Description(image), fresh) << size;
        ASSERT_TRUE(image.LoadPsd(&last.stream));
        ASSERT_EQ(Description(image), plain) << "nothing is left of the document before";
    }
}

TEST(LayerRecord, ShapeIsJudged) {
    const auto with = [](PsdLayerFields layer) -> PsdFields { return {.layers = {layer}}; };
    ExpectPairs({
        {"signature", with({.extra = Bytes(5)}), with({.signature = "8BIN", .extra = Bytes(5)})},
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
        {"signature", with({}), with({.signature = "8BIN"})},
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
