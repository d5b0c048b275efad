#include "chunks/body_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"
#include "support/memory_limit.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

TEST(Chunks, AColourMapHasAsManyEntriesAsFit) {
    for (const u32 size : {0u, 2u, 3u, 50u, 3003u}) {
        const LoadedIff file(Form("ILBM", {Chunk("CMAP", Bytes(size, 5)), Chunk("BODY", {1})}));
        ASSERT_TRUE(file.bLoaded) << size;
        EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).m_nEntries, size / 3);
        EXPECT_EQ(ChildAs<BodyChunk>(file.Root(), 1).m_nDataSize, 1u);
    }
}

TEST(Chunks, RefusalsBesideTheirControls) {
    const auto blocks = [](u32 claimed) { return S3tc({.data = Bytes(8), .claimedSize = claimed}); };
    for (const auto& [name, type, chunk, loads] : Table<const char*, const char*, Bytes, bool>{
             {"TRAN", "ILBM", Chunk("TRAN", Bytes(8)), true},
             {"TRAN of 7", "ILBM", Chunk("TRAN", Bytes(7)), false},
             {"ALPH", "ILBM", Chunk("ALPH", Bytes(6)), true},
             {"ALPH of 5", "ILBM", Chunk("ALPH", Bytes(5)), false},
             {"S3TC that claims less", "ILBM", blocks(3), true},
             {"S3TC that claims a byte more", "ILBM", blocks(9), false},
             {"S3TC that claims 4 GB", "ILBM", blocks(0xFFFFFFFF), false},
             {"S3TC without data", "ILBM", S3tc({}), true},
             {"S3TC of 21", "ILBM", Chunk("S3TC", Bytes(21)), false},
             {"CONT", "MIPM", Chunk("CONT", Bytes(2)), true},
             {"CONT of 1", "MIPM", Chunk("CONT", Bytes(1)), false},
         })
        EXPECT_EQ(Loads(Form(type, {chunk})), loads) << name;
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

// Writes down what would be stored.
class RecordingArchive final : public IffArchive {
  public:
    explicit RecordingArchive(std::string& log) : IffArchive(false, 0), m_log(log) {}

    i32 GetRemaining() override { return m_nMoved; }
    IffArchive* OpenChunk(u32 size) override {
        m_log += "open" + std::to_string(size) + " ";
        return new RecordingArchive(m_log);
    }
    void CloseChunk(IffArchive* child) override {
        Put("close", child->GetRemaining());
        child->Release();
    }
    void Attach(ByteStream*) override {}
    void Detach() override {}
    void Transfer(IffId& v) override { Put(std::string(reinterpret_cast<const char*>(&v), 4), 4); }
    void Transfer(u64& v) override { Put(std::to_string(v), 8); }
    void Transfer(i64& v) override { Put(std::to_string(v), 8); }
    void Transfer(u32& v) override { Put(std::to_string(v), 4); }
    void Transfer(i32& v) override { Put(std::to_string(v), 4); }
    void Transfer(u16& v) override { Put(std::to_string(v), 2); }
    void Transfer(i16& v) override { Put(std::to_string(v), 2); }
    void Transfer(u8& v) override { Put(std::to_string(v), 1); }
    void Transfer(i8& v) override { Put(std::to_string(v), 1); }
    void Transfer(IffRgb& v) override { Put(std::to_string(v.red), 3); }
    void TransferBytes(void*, u32 count) override { Put("bytes", static_cast<i32>(count)); }

  private:
    u32 GetSourceRemaining() override { return 0; }
    void Put(const std::string& text, i32 size) {
        m_nMoved += size;
        m_log += text + " ";
    }

    std::string& m_log;
    i32 m_nMoved = 0;
};

TEST(Chunks, StoringMovesTheSameFieldsAndTheSizesBehindThem) {
    LoadedIff file(List("ILBM", {Form("ILBM", {Chunk("GRAB", {0, 1, 0, 2}), Cmap({RED}), Chunk("JUNK", {1, 2})}),
                                    Prop("ILBM", {Chunk("BODY", {1, 2, 3})})}));
    ASSERT_TRUE(file.bLoaded);
    std::string log;
    RecordingArchive archive(log);
    file.iff.Transfer(archive);
    EXPECT_EQ(log,
        "open0 ILBM "
        "open0 ILBM open0 1 2 GRAB 4 close open0 255 CMAP 3 close 0 open0 bytes JUNK 2 close FORM 38 close "
        "open0 ILBM open0 bytes BODY 3 close 0 PROP 16 close "
        "LIST 74 close ");
    IffFile empty;
    empty.Transfer(archive);
    EXPECT_TRUE(archive.HasFailed());
}

}  // namespace
