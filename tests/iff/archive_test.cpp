#include "iff/stream_archive.h"
#include "support/loading.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

// A root archive over bytes in memory.
struct Opened {
    explicit Opened(Bytes bytes) : source(std::move(bytes)) { archive->Attach(&source.stream); }
    ~Opened() { archive->Detach(); }

    MemoryStream source;
    CountedPtr<IffArchive> archive = CountedPtr<IffArchive>::Adopt(new IffStreamArchive);
};

TEST(IffArchive, AnOverrunReadsNothingAndSticks) {
    Opened file(Bytes(8));
    IffArchive* const child = file.archive->OpenChunk(3);
    u32 value = 0;
    child->Transfer(value);
    EXPECT_TRUE(child->HasFailed() && child->GetRemaining() == -1);
    EXPECT_EQ(file.source.stream.GetPosition(), 0u);
    EXPECT_FALSE(file.archive->HasFailed()) << "the parent learns of it when the child is closed";
    file.archive->CloseChunk(child);
    EXPECT_TRUE(file.archive->HasFailed());
    EXPECT_EQ(file.source.stream.GetPosition(), 3u);
}

TEST(IffArchive, AChildLargerThanItsParentFailsTheNextTransfer) {
    Opened file(Bytes(20));
    file.archive->CloseChunk(file.archive->OpenChunk(21));
    EXPECT_FALSE(file.archive->HasFailed());
    u8 value = 0;
    file.archive->Transfer(value);
    EXPECT_TRUE(file.archive->HasFailed());
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
        Opened file(Bytes(20));
        const auto child = CountedPtr<IffArchive>::Adopt(file.archive->OpenChunk(chunk));
        EXPECT_EQ(child->CanDeliver(count), delivers) << count << " of " << chunk;
        EXPECT_EQ(child->HasFailed(), !delivers);
    }
}

}  // namespace
