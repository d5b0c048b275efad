#include "framework/core/exception.h"
#include "support/loading.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

Bytes Counted(u32 count) {
    Bytes bytes(count);
    for (u32 i = 0; i < count; ++i) bytes[i] = static_cast<u8>(i * 7 + i / 256);
    return bytes;
}

u8 Next(ByteStream& stream) {
    u8 byte = 0xEE;
    stream.GetByte(byte);
    return byte;
}

TEST(ByteStream, DeliversEveryByteOnceAndThenEnds) {
    const Bytes bytes = Counted(3000);
    MemoryStream source(bytes);
    for (u32 i = 0; i < bytes.size(); ++i) {
        ASSERT_EQ(source.stream.GetPosition(), i);
        ASSERT_EQ(Next(source.stream), bytes[i]);
    }
    EXPECT_EQ(source.file.m_nReads, 3u);
    EXPECT_EQ(source.stream.GetRemaining(), 0u);
    EXPECT_TRUE(source.stream.IsGood());
    EXPECT_EQ(Next(source.stream), 0xEE) << "left as it was";
    EXPECT_EQ(source.stream.m_nStatus, BS_END | BS_SHORT);
}

TEST(ByteStream, BytesInOnePieceComeWholeOrNotAtAll) {
    MemoryStream source(Counted(1030));
    u8 four[4] = {9, 9, 9, 9};
    source.stream.SetPosition(1022);
    source.stream.GetBytes(four, 4);  // across two refills of 1024 bytes
    EXPECT_EQ(std::memcmp(four, Counted(1030).data() + 1022, 4), 0);
    source.stream.SetPosition(1027);
    const u8 before = four[0];
    source.stream.GetBytes(four, 4);
    EXPECT_EQ(source.stream.m_nStatus, BS_END) << "three bytes were delivered, so the source is not short";
    EXPECT_EQ(four[0], before);
}

TEST(ByteStream, MovesInsideTheBufferTouchNoSource) {
    MemoryStream source(Counted(5000));
    for (int i = 0; i < 100; ++i) Next(source.stream);
    const u64 calls = source.archive.m_nCalls, seeks = source.file.m_nSeeks;
    source.stream.SetPosition(0);
    EXPECT_EQ(source.stream.m_nHighWater, 100u);
    for (u32 i = 0; i < 100; ++i) ASSERT_EQ(Next(source.stream), Counted(100)[i]);
    source.stream.SetPosition(1024);  // the buffer's end
    EXPECT_EQ(source.archive.m_nCalls, calls);
    EXPECT_EQ(source.file.m_nSeeks, seeks);
    EXPECT_EQ(Next(source.stream), Counted(1025)[1024]);

    source.stream.SetPosition(1023);  // before the buffer held now
    EXPECT_EQ(Next(source.stream), Counted(1024)[1023]);
    source.stream.SetPosition(4000);  // behind it
    EXPECT_EQ(Next(source.stream), Counted(4001)[4000]);
}

TEST(ByteStream, SyncLeavesTheSourceAtTheLogicalPosition) {
    MemoryStream source(Counted(3000));
    for (int i = 0; i < 10; ++i) Next(source.stream);
    source.stream.SetPosition(4);
    source.stream.Sync();
    EXPECT_EQ(source.file.Seek(0, CFile::current), 4u);
    u8 block[2000];
    source.stream.ReadBlock(block, sizeof(block));
    EXPECT_EQ(std::memcmp(block, Counted(3000).data() + 4, sizeof(block)), 0);
    source.stream.ReadBlock(block, sizeof(block));
    EXPECT_EQ(source.stream.m_nStatus, BS_SHORT);
}

TEST(ByteStream, WritesThroughTheBufferAndPastIt) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    ArchiveByteStream stream(&archive, 4);
    for (u8 i = 0; i < 8; ++i) stream.PutByte(i);
    stream.SetPosition(4);  // back inside the buffer
    stream.PutByte(44);
    stream.Sync();
    stream.WriteBlock("x", 1);
    stream.PutByte(9);
    stream.Close();
    EXPECT_EQ(file.m_bytes, (Bytes{0, 1, 2, 3, 44, 'x', 9, 7}));
    EXPECT_TRUE(stream.IsGood());
    stream.WriteBlock("z", 1);
    EXPECT_EQ(stream.m_nStatus, BS_UNSUPPORTED) << "the archive is gone";
}

TEST(ByteStream, FaultsOfTheSourceBecomeStatusBits) {
    for (const auto& [name, spoil, status] : Table<const char*, void (*)(MemoryStream&), u32>{
             {"control", [](MemoryStream&) {}, 0},
             {"reading throws", [](MemoryStream& s) { s.file.m_nThrowAt = 2000; }, BS_ERROR | BS_END},
             {"the file ends early", [](MemoryStream& s) { s.file.m_bytes.resize(1500); }, BS_SHORT | BS_END},
             {"seeking throws", [](MemoryStream& s) { s.file.m_bThrowOnSeek = true; }, BS_UNSUPPORTED},
             {"no length", [](MemoryStream& s) { s.file.m_bThrowOnLength = true; }, 0},
             {"4 GiB", [](MemoryStream& s) { s.file.m_nClaimedLength = 1ull << 32; }, BS_UNSUPPORTED},
             {"position beyond", [](MemoryStream& s) { s.file.Seek(1ll << 32, CFile::begin); },
                 BS_UNSUPPORTED | BS_SHORT | BS_END},
             {"a byte less", [](MemoryStream& s) { s.file.m_nClaimedLength = 0xFFFFFFFF; }, 0},
         }) {
        MemoryStream source(Counted(3000));
        spoil(source);
        for (u32 i = 0; i < 3000; ++i) Next(source.stream);
        EXPECT_EQ(source.stream.m_nStatus, status) << name;
    }
}

TEST(ByteStream, WithoutAnArchiveNothingIsSupported) {
    static u8 byte = 0;
    static u32 limit = 7;
    for (void (*const operation)(ByteStream&) : {
             +[](ByteStream& s) { EXPECT_EQ(s.GetRemaining(), 0u); },
             +[](ByteStream& s) { s.ReadBlock(&byte, 1); },
             +[](ByteStream& s) { s.WriteBlock(&byte, 1); },
             +[](ByteStream& s) { s.ReleaseReadBuffer(0); },
             +[](ByteStream& s) { s.ReleaseWriteBuffer(0); },
             +[](ByteStream& s) { EXPECT_TRUE(!s.AcquireReadBuffer(&limit, 16) && limit == 0); },
         }) {
        ArchiveByteStream stream(nullptr, 16);
        operation(stream);
        EXPECT_EQ(stream.m_nStatus, BS_UNSUPPORTED);
    }
}

}  // namespace
