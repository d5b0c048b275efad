#include "chunks/extension_chunks.h"

#include "chunks/alph_chunk.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/pixels.h"

#include <gtest/gtest.h>

namespace {

TEST(ExtensionChunks, FieldsComeInFileOrder) {
    const LoadedIff file(
        Form("ILBM", {Chunk("TRAN", {1, 0, 2, 0, 3, 4, 5, 6, 99}),
                      S3tc({.code = "DXT3", .width = 4, .height = 5, .data = {7, 8, 9}, .rest = {1, 2}})}));
    ASSERT_TRUE(file.bLoaded);
    const auto& tran = ChildAs<TranChunk>(file.Root(), 0);
    EXPECT_EQ((std::vector<u32>{tran.m_nByte, tran.m_nFirst, tran.m_nSecond}), (std::vector<u32>{1, 2, 3}));
    EXPECT_EQ(tran.m_Colour, (IffRgb{4, 5, 6}));
    const auto& s3tc = ChildAs<S3tcChunk>(file.Root(), 1);
    EXPECT_EQ((std::vector<u32>{s3tc.m_nValue, s3tc.m_nFirst, s3tc.m_nSecond, s3tc.m_nThird, s3tc.m_nWidth,
                                s3tc.m_nHeight}),
              (std::vector<u32>{0x01020304, 0x0506, 0x0708, 0x090A, 4, 5}));
    EXPECT_EQ(s3tc.m_Code, IffId("DXT3"));
    EXPECT_EQ(Bytes(s3tc.m_pData.Data(), s3tc.m_pData.Data() + s3tc.m_nDataSize), (Bytes{7, 8, 9}));

    const LoadedIff chain(Form("MIPM", {Chunk("CONT", {3, 4, 5})}));
    EXPECT_EQ(ChildAs<ContChunk>(chain.Root(), 0).m_nLevels, 3u);
    EXPECT_EQ(ChildAs<ContChunk>(chain.Root(), 0).m_nByte, 4u);
}

TEST(ExtensionChunks, RefusalsBesideTheirControls) {
    const auto blocks = [](u32 claimed) { return S3tc({.data = Bytes(8), .claimedSize = claimed}); };
    struct Case {
        const char* name;
        Bytes chunk;
        bool loads;
    };
    for (const Case& c : {
             Case{"TRAN", Chunk("TRAN", Bytes(8)), true},
             Case{"TRAN of 7", Chunk("TRAN", Bytes(7)), false},
             Case{"ALPH", Chunk("ALPH", Bytes(6)), true},
             Case{"ALPH of 5", Chunk("ALPH", Bytes(5)), false},
             Case{"S3TC", blocks(8), true},
             Case{"S3TC that claims less", blocks(3), true},
             Case{"S3TC that claims a byte more", blocks(9), false},
             Case{"S3TC that claims 4 GB", blocks(0xFFFFFFFF), false},
             Case{"S3TC without data", S3tc({}), true},
             Case{"S3TC of 21", Chunk("S3TC", Bytes(21)), false},
         })
        EXPECT_EQ(Loads(Form("ILBM", {c.chunk})), c.loads) << c.name;
    EXPECT_TRUE(Loads(Form("MIPM", {Chunk("CONT", Bytes(2))})));
    EXPECT_FALSE(Loads(Form("MIPM", {Chunk("CONT", Bytes(1))})));
}

TEST(AlphChunk, IsDecodedByItsOwnHeader) {
    const LoadedIff file(Form(
        "ILBM",
        {Bmhd({.width = 8, .height = 1}),
         Alph({.width = 16, .height = 9, .planes = 2, .compression = 1, .data = {0xFF, 0xFF, 1, 0, 0xFF}})}));
    auto& alph = ChildAs<AlphChunk>(file.Root(), 1);
    EXPECT_EQ(alph.m_nDataSize, 5u);
    ASSERT_TRUE(alph.BeginRows());
    EXPECT_EQ(ValueText(alph.DecodeRow(), 16), "1111111133333333");
    EXPECT_FALSE(alph.DecodeRow());
}

}  // namespace
