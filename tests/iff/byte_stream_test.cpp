#include "support/loading.h"
#include "support/random.h"
#include "support/table.h"

#include <gtest/gtest.h>

#include <functional>

const Bytes DATA = Random(1).SomeBytes(5000);

static u8 Next(ByteStream& stream) {
    u8 byte = 0xEE;
    stream.GetByte(byte);
    return byte;
}

TEST(ByteStream, DeliversEveryByteOnceAndThenEnds) {
    MemoryStream source(DATA);
    for (const u8 byte : DATA) ASSERT_EQ(Next(source.stream), byte);
    EXPECT_EQ(source.file.m_reads.nCalls, 5u);
    EXPECT_EQ(source.stream.GetRemaining(), 0u);
    EXPECT_TRUE(source.stream.IsGood());
    u8 block[4] = {};
    source.stream.SetPosition(4997);
    source.stream.GetBytes(block, 4);
    EXPECT_EQ(block[0], 0) << "bytes come whole or not at all";
    EXPECT_EQ(source.stream.m_nStatus, BS_END) << "three were delivered, so the source is not short";
    source.stream.ReadBlock(block, 4);
    EXPECT_EQ(source.stream.m_nStatus, BS_END | BS_SHORT);
}

TEST(ByteStream, MovesInsideTheBufferTouchNoSource) {
    MemoryStream source(DATA);
    for (int i = 0; i < 100; ++i) Next(source.stream);
    const u64 calls = source.archive.m_nCalls, seeks = source.file.m_seeks.nCalls;
    source.stream.SetPosition(0);
    EXPECT_EQ(Next(source.stream), DATA[0]);
    source.stream.SetPosition(1024);  // the buffer's end
    EXPECT_TRUE(source.archive.m_nCalls == calls && source.file.m_seeks.nCalls == seeks);
    EXPECT_EQ(Next(source.stream), DATA[1024]);
}

TEST(ByteStream, WritesEveryByte) {
    MemoryFile file;
    CArchive archive(&file, CArchive::store);
    ArchiveByteStream stream(&archive, 2);
    for (u8 i = 0; i < 3; ++i) stream.PutByte(i);
    stream.Close();
    EXPECT_EQ(file.m_bytes, (Bytes{0, 1, 2}));
}

TEST(ByteStream, FaultsOfTheSourceBecomeStatusBits) {
    for (const auto& [name, spoil, status] : Table<const char*, void (*)(MemoryStream&), u32>{
             {"reading throws", [](auto& s) { s.file.m_reads.fault.nAt = 1; }, BS_ERROR | BS_END},
             {"the file ends early", [](auto& s) { s.file.m_bytes.resize(1500); }, BS_SHORT | BS_END},
             {"neither position nor length", [](auto& s) { s.file.m_seeks.fault.nAt = s.file.m_lengths.fault.nAt = 0; },
                 BS_UNSUPPORTED},
             {"a byte less than 4 GiB", [](auto& s) { s.file.m_nClaimedLength = 0xFFFFFFFF; }, 0},
             {"4 GiB", [](auto& s) { s.file.m_nClaimedLength = 1ull << 32; }, BS_UNSUPPORTED},
             {"position beyond", [](auto& s) { s.file.Seek(1ll << 32, CFile::begin); },
                 BS_UNSUPPORTED | BS_SHORT | BS_END},
         }) {
        MemoryStream source(DATA);
        spoil(source);
        for (u64 i = 0; i < DATA.size(); ++i) Next(source.stream);
        EXPECT_EQ(source.stream.m_nStatus, status) << name;
    }
    ArchiveByteStream none(nullptr, 16);
    Next(none);
    EXPECT_EQ(none.m_nStatus, BS_UNSUPPORTED | BS_END) << "without an archive";
}

// Has a place, and nothing else that a source can have.
struct PlaceOnly final : public ByteStream {
    PlaceOnly() : ByteStream(16) {}
    u32 Tell() override { return 0; }
    void Seek(u32) override {}
};

TEST(ByteStream, WhatASourceCannotDoIsSaidAndNotDone) {
    MemoryStream closed(DATA);
    Next(closed.stream);
    closed.stream.Close();
    ArchiveByteStream without(nullptr, 16);
    PlaceOnly place;
    u32 limit = 1;
    for (ByteStream* const stream : std::initializer_list<ByteStream*>{&closed.stream, &without, &place}) {
        u8 block[4] = {7, 7, 7, 7};
        const std::function<void()> calls[] = {
            [&] { EXPECT_EQ(stream->ReadBlock(block, 4), 0u); },
            [&] { stream->WriteBlock(block, 4); },
            [&] { EXPECT_EQ(stream->AcquireReadBuffer(&limit, 4), nullptr); },
            [&] { stream->ReleaseReadBuffer(0); },
            [&] { stream->ReleaseWriteBuffer(0); },
        };
        for (const auto& call : calls) {
            stream->m_nStatus = 0;
            call();
            EXPECT_EQ(stream->m_nStatus, BS_UNSUPPORTED);
        }
        EXPECT_EQ(block[0], 7);
    }
    EXPECT_EQ(closed.stream.GetRemaining(), 0u);
    EXPECT_EQ(closed.stream.GetDataLength(), 0u);
    EXPECT_EQ(place.GetRemaining(), 0xFFFFFFFF) << "who does not know bounds nothing";
    EXPECT_EQ(place.GetDataLength(), 0xFFFFFFFF);
    EXPECT_EQ(place.AcquireWriteBuffer(&limit, 4), nullptr);
}
