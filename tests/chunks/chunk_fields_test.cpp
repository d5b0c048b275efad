#include "chunks/body_chunk.h"
#include "chunks/ilbm_chunks.h"
#include "support/iff_builder.h"
#include "support/loading.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

namespace {

TEST(Chunks, FieldsComeInFileOrder) {
    const Bytes header = ByteBuilder()
                             .U16(0xFFFE)
                             .U16(3)
                             .U16(5)
                             .U16(7)
                             .U8(8)
                             .U8(9)
                             .U8(10)
                             .U8(11)
                             .U16(13)
                             .U8(14)
                             .U8(15)
                             .U16(17)
                             .U16(19);
    const LoadedIff file(Form("ILBM", {Chunk("BMHD", header), Chunk("GRAB", {0, 1, 0xFF, 2})}));
    const auto& b = ChildAs<BmhdChunk>(file.Root(), 0);
    EXPECT_EQ((std::vector<u32>{b.m_nWidth, b.m_nHeight, b.m_nX, b.m_nY, b.m_nPlanes, b.m_nMasking,
                                b.m_nCompression, b.m_nPad, b.m_nTransparentColour, b.m_nXAspect,
                                b.m_nYAspect, b.m_nPageWidth, b.m_nPageHeight}),
              (std::vector<u32>{0xFFFE, 3, 5, 7, 8, 9, 10, 11, 13, 14, 15, 17, 19}));
    EXPECT_EQ(ChildAs<GrabChunk>(file.Root(), 1).m_nX, 1u);
    EXPECT_EQ(ChildAs<GrabChunk>(file.Root(), 1).m_nY, 0xFF02u);
}

TEST(Chunks, AColourMapHasAsManyEntriesAsFit) {
    for (const u32 size : {0u, 2u, 3u, 48u, 50u, 3003u}) {
        const LoadedIff file(Form("ILBM", {Chunk("CMAP", Bytes(size, 5)), Chunk("BODY", {1})}));
        ASSERT_TRUE(file.bLoaded) << size;
        EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).m_nEntries, size / 3);
        EXPECT_EQ(ChildAs<BodyChunk>(file.Root(), 1).m_nDataSize, 1u);
    }
    const LoadedIff file(Form("ILBM", {Cmap({RED, {1, 2, 3}})}));
    EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).Entries()[0], RED);
    EXPECT_EQ(ChildAs<CmapChunk>(file.Root(), 0).Entries()[1], (IffRgb{1, 2, 3}));
}

// Writes down what would be stored.
class RecordingArchive final : public IffArchive {
  public:
    explicit RecordingArchive(std::ostream& log) : IffArchive(false, 0), m_log(log) {}

    i32 GetRemaining() override { return m_nMoved; }
    IffArchive* OpenChunk(u32 size) override {
        m_log << "open" << size << " ";
        return new RecordingArchive(m_log);
    }
    void CloseChunk(IffArchive* child) override {
        m_nMoved += child->GetRemaining();
        m_log << "close ";
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
        m_log << text << " ";
    }

    std::ostream& m_log;
    i32 m_nMoved = 0;
};

TEST(Chunks, StoringMovesTheSameFieldsAndTheSizesBehindThem) {
    LoadedIff file(
        List("ILBM", {Form("ILBM", {Chunk("GRAB", {0, 1, 0, 2}), Cmap({RED}), Chunk("JUNK", {1, 2})}),
                      Prop("ILBM", {Chunk("BODY", {1, 2, 3})})}));
    ASSERT_TRUE(file.bLoaded);
    std::ostringstream log;
    RecordingArchive archive(log);
    file.iff.Transfer(archive);
    EXPECT_EQ(
        log.str(),
        "open0 ILBM "
        "open0 ILBM open0 1 2 GRAB 4 close open0 255 CMAP 3 close 0 open0 bytes JUNK 2 close FORM 38 close "
        "open0 ILBM open0 bytes BODY 3 close 0 PROP 16 close "
        "LIST 74 close ");
    RecordingArchive nothing(log);
    IffFile empty;
    empty.Transfer(nothing);
    EXPECT_TRUE(nothing.HasFailed());
}

}  // namespace
