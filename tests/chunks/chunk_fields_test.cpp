#include "chunks/body_chunk.h"
#include "chunks/extension_chunks.h"
#include "chunks/ilbm_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/memory_limit.h"
#include "support/table.h"

#include <gtest/gtest.h>

// Ids of the chunks that some class claims.
static std::string KnownIn(std::string_view type) {
    Parts parts;
    for (const char* id : {"BMHD", "CMAP", "BODY", "GRAB", "TRAN", "ALPH", "CONT", "S3TC"})
        parts.push_back(Chunk(id, Bytes(24)));
    const auto add = [](IffChunk* pChunk, void* pText) {
        static_cast<std::string*>(pText)->append(reinterpret_cast<const char*>(&pChunk->m_Id), 4);
        return true;
    };
    std::string known;
    LoadedIff(Form(type, parts)).Root().ForEach(ID_NULL, ID_NULL, add, &known);
    return known;
}

TEST(Chunks, AreKnownInTheirOwnFormsOnly) {
    EXPECT_EQ(KnownIn("ILBM"), "BMHDCMAPBODYGRABTRANALPHS3TC");
    EXPECT_EQ(KnownIn("MIPM"), "CONT");
    EXPECT_EQ(KnownIn("ABCD"), "");
}

TEST(Chunks, AColourMapHasAsManyEntriesAsFit) {
    for (const u32 size : {0u, 2u, 3u, 50u, 3003u}) {
        const LoadedIff file(Form("ILBM", {Chunk("CMAP", Bytes(size, 5)), Body({1})}));
        ASSERT_TRUE(file.bLoaded) << size;
        EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).m_nEntries, size / 3);
        EXPECT_EQ(ChildAs<BodyChunk>(file.Root(), 1).m_nDataSize, 1u);
    }
}

TEST(Chunks, RefusalsBesideTheirControls) {
    for (const auto& [type, id, least] : Table<const char*, const char*, u32>{{"ILBM", "BMHD", 20}, {"ILBM", "GRAB", 4},
             {"ILBM", "TRAN", 8}, {"ILBM", "ALPH", 6}, {"ILBM", "S3TC", 22}, {"MIPM", "CONT", 2}}) {
        EXPECT_TRUE(Loads(Form(type, {Chunk(id, Bytes(least))}))) << id;
        EXPECT_FALSE(Loads(Form(type, {Chunk(id, Bytes(least - 1))}))) << id;
    }
    const LoadedIff none(Form("ILBM", {S3tc({.data = Bytes(8), .claimedSize = 0})}));
    EXPECT_FALSE(ChildAs<S3tcChunk>(none.Root(), 0).m_pData);
}

// With so little memory, asking for what a chunk only claims would throw.
TEST(Chunks, WhatTheFileCannotDeliverIsRefusedBeforeItIsAllocated) {
    const MemoryLimit limit(2900);
    for (const char* id : {"BODY", "JUNK", "CMAP"}) {
        EXPECT_FALSE(Loads(Form("ILBM", {Chunk(id, Bytes(900), 3000)}, 3012))) << id;
        EXPECT_TRUE(Loads(Form("ILBM", {Chunk(id, Bytes(900))}))) << id;
    }
    // The others after it have the bytes that the first lacks.
    EXPECT_FALSE(Loads(Form("ILBM", Parts(4, S3tc({.data = Bytes(900), .claimedSize = 3000})))));
}
