#include "chunks/body_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/memory_limit.h"
#include "support/table.h"

#include <gtest/gtest.h>

TEST(Chunks, AColourMapHasAsManyEntriesAsFit) {
    for (const u32 size : {0u, 2u, 3u, 50u, 3003u}) {
        const LoadedIff file(Form("ILBM", {Chunk("CMAP", Bytes(size, 5)), Chunk("BODY", {1})}));
        ASSERT_TRUE(file.bLoaded) << size;
        EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).m_nEntries, size / 3);
        EXPECT_EQ(ChildAs<BodyChunk>(file.Root(), 1).m_nDataSize, 1u);
    }
}

TEST(Chunks, RefusalsBesideTheirControls) {
    for (const auto& [type, id, least] : Table<const char*, const char*, u32>{
             {"ILBM", "TRAN", 8}, {"ILBM", "ALPH", 6}, {"ILBM", "S3TC", 22}, {"MIPM", "CONT", 2}}) {
        EXPECT_TRUE(Loads(Form(type, {Chunk(id, Bytes(least))}))) << id;
        EXPECT_FALSE(Loads(Form(type, {Chunk(id, Bytes(least - 1))}))) << id;
    }
    for (const auto& [claimed, loads] : Table<u32, bool>{{3, true}, {8, true}, {9, false}, {0xFFFFFFFF, false}})
        EXPECT_EQ(Loads(Form("ILBM", {S3tc({.data = Bytes(8), .claimedSize = claimed})})), loads) << claimed;
}

// With so little memory, asking for what a chunk only claims would throw.
TEST(Chunks, WhatTheFileCannotDeliverIsRefusedBeforeItIsAllocated) {
    const MemoryLimit limit(1000);
    for (const char* id : {"BODY", "JUNK", "CMAP"}) {
        EXPECT_FALSE(Loads(Form("ILBM", {Chunk(id, Bytes(900), 3000)}, 3012))) << id;
        EXPECT_TRUE(Loads(Form("ILBM", {Chunk(id, Bytes(900))}))) << id;
    }
    EXPECT_FALSE(Loads(Form("ILBM", {S3tc({.data = Bytes(900), .claimedSize = 3000})})));
}

// Writes down the sizes of what would be stored, and ids as they are.
class RecordingArchive final : public IffArchive {
  public:
    explicit RecordingArchive(std::string& log) : IffArchive(false, 0), m_log(log) {}

    i32 GetRemaining() override { return m_nMoved; }
    IffArchive* OpenChunk(u32 size) override {
        return Put("open", static_cast<i32>(size)), new RecordingArchive(m_log);
    }
    void CloseChunk(IffArchive* child) override { Put("close", child->GetRemaining()), child->Release(); }
    void Attach(ByteStream*) override {}
    void Detach() override {}
    void Transfer(IffId& id) override { Put(std::string(reinterpret_cast<const char*>(&id), 4), 4); }
    void Transfer(u64&) override { Put("u", 8); }
    void Transfer(i64&) override { Put("i", 8); }
    void Transfer(u32& value) override { Put(std::to_string(value), 4); }
    void Transfer(i32&) override { Put("i", 4); }
    void Transfer(u16& value) override { Put(std::to_string(value), 2); }
    void Transfer(i16&) override { Put("i", 2); }
    void Transfer(u8& value) override { Put(std::to_string(value), 1); }
    void Transfer(i8&) override { Put("i", 1); }
    void Transfer(IffRgb& value) override { Put(std::to_string(value.red), 3); }
    void TransferBytes(void*, u32 count) override { Put("bytes", static_cast<i32>(count)); }

  private:
    u32 GetSourceRemaining() override { return 0; }
    void Put(const std::string& text, i32 size) { m_log += text + " ", m_nMoved += size; }

    std::string& m_log;
    i32 m_nMoved = 0;
};

TEST(Chunks, StoringMovesTheSameFieldsAndTheSizesBehindThem) {
    LoadedIff file(List("ILBM", {Form("ILBM", {Chunk("GRAB", {0, 1, 0, 2}), Cmap({RED}), Chunk("JUNK", {1, 2})}),
                                    Prop("ILBM", {Chunk("BODY", {1, 2, 3})})}));
    std::string log;
    RecordingArchive archive(log);
    file.iff.Transfer(archive);
    EXPECT_EQ(log,
        "open ILBM open ILBM open 1 2 GRAB 4 close open 255 CMAP 3 close 0 open bytes JUNK 2 close FORM 38 "
        "close open ILBM open bytes BODY 3 close 0 PROP 16 close LIST 74 close ");
    IffFile().Transfer(archive);
    EXPECT_TRUE(archive.HasFailed());
}
