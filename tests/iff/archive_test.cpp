#include "iff/stream_archive.h"
#include "support/loading.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

// A root archive over bytes in memory.
struct Opened {
    explicit Opened(Bytes bytes) : source(std::move(bytes)) {
        archive = CountedPtr<IffArchive>::Adopt(new IffStreamArchive);
        archive->Attach(&source.stream);
    }
    ~Opened() { archive->Detach(); }

    MemoryStream source;
    CountedPtr<IffArchive> archive;
};

template <typename Value>
Value Moved(const Bytes& bytes) {
    Opened file(bytes);
    Value value{};
    file.archive->Transfer(value);
    EXPECT_FALSE(file.archive->HasFailed());
    EXPECT_EQ(file.archive->GetRemaining(), static_cast<i32>(bytes.size() - sizeof(Value)));
    return value;
}

TEST(IffArchive, IntegersAreBigEndianAndIdsAreNot) {
    EXPECT_EQ(Moved<u8>({0xFE}), 0xFE);
    EXPECT_EQ(Moved<i8>({0xFE}), -2);
    EXPECT_EQ(Moved<u16>({0x12, 0x34}), 0x1234);
    EXPECT_EQ(Moved<i16>({0xFF, 0x80}), -128);
    EXPECT_EQ(Moved<u32>({'F', 'O', 'R', 'M', 0}), 0x464F524Du);
    EXPECT_EQ(Moved<i32>({0xFF, 0xFF, 0xFF, 0x7F}), -129);
    EXPECT_EQ(Moved<u64>({1, 2, 3, 4, 5, 6, 7, 0xF8}), 0x01020304050607F8u);
    EXPECT_EQ(Moved<i64>({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F}), -129);
    EXPECT_EQ(Moved<IffId>({'F', 'O', 'R', 'M'}), ID_FORM);
    EXPECT_EQ(Moved<IffRgb>({1, 2, 3}), (IffRgb{1, 2, 3}));
}

TEST(IffArchive, AnOverrunReadsNothingAndSticks) {
    Opened file({1, 2, 3, 4, 5, 6, 7, 8});
    IffArchive* const child = file.archive->OpenChunk(3);
    u32 value = 0;
    child->Transfer(value);
    EXPECT_TRUE(child->HasFailed());
    EXPECT_EQ(child->GetRemaining(), -1);
    EXPECT_EQ(file.source.stream.GetPosition(), 0u);
    EXPECT_FALSE(file.archive->HasFailed()) << "the parent learns of it when the child is closed";
    file.archive->CloseChunk(child);
    EXPECT_TRUE(file.archive->HasFailed());
    EXPECT_EQ(file.source.stream.GetPosition(), 3u);
    EXPECT_EQ(file.source.stream.m_nRefs, 2) << "the root's own reference beside the creator's";
}

TEST(IffArchive, AChildLargerThanItsParentFailsTheNextTransfer) {
    Opened file(Bytes(20, 0));
    file.archive->CloseChunk(file.archive->OpenChunk(21));
    EXPECT_FALSE(file.archive->HasFailed());
    u8 value = 0;
    file.archive->Transfer(value);
    EXPECT_TRUE(file.archive->HasFailed());
    EXPECT_EQ(file.archive->GetRemaining(), -2);
    for (int i = 0; i < 3; ++i) {
        IffArchive* const child = file.archive->OpenChunk(0x80000000);
        EXPECT_TRUE(child->HasFailed());
        file.archive->CloseChunk(child);
        EXPECT_LT(file.archive->GetRemaining(), 0) << "the count does not wrap back into the chunk";
    }
}

TEST(IffArchive, DeliversOnlyWhatChunkAndSourceStillHold) {
    for (const auto& [chunk, count, delivers] : Table<u32, i64, bool>{
             {10, 10, true}, {10, 11, false}, {100, 20, true}, {100, 21, false}, {10, -1, false}, {0, 0, true}}) {
        Opened file(Bytes(20, 0));
        IffArchive* const child = file.archive->OpenChunk(chunk);
        EXPECT_EQ(child->CanDeliver(count), delivers) << count << " of " << chunk;
        EXPECT_EQ(child->HasFailed(), !delivers);
        file.archive->CloseChunk(child);
    }
}

}  // namespace
