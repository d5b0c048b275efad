// To whoever reads them, files on disk and files in memory are the same, whatever the sizes.
#include "framework/core/regular_file.h"
#include "support/loading.h"
#include "support/random.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

constexpr u32 REFILL = 1024;  // bytes of the document's byte stream

// At, beside and between the sizes at which reading changes its ways. Whoever adds such a threshold to a file, an
// archive or a byte stream adds it here.
u32 SomeSize(Random& random) {
    constexpr u32 THRESHOLDS[] = {
        1, REFILL, CRegularFile::LOOK_BACK, CRegularFile::MOST_BY_WINDOW, CRegularFile::WINDOW_SIZE};
    const u32 threshold = THRESHOLDS[random.Below(std::size(THRESHOLDS))];
    const u32 excess = random.Below(4);
    return excess < 3 ? threshold - 1 + excess : random.Below(threshold);
}

// Often about the place where reading stands, and sometimes behind the file's end.
u32 SomePosition(Random& random, u32 here) {
    const u32 way = random.Below(4), distance = way == 0 ? random.Below(9) : SomeSize(random);
    if (way == 1) return distance + SomeSize(random);
    if (way == 2) return here + distance;
    return here - std::min(here, distance);
}

struct TwoFiles {
    TempFolder folder;
    MemoryFile memory{Random(1).SomeBytes(3 * CRegularFile::WINDOW_SIZE + 17)};
    std::string path = folder.Write(memory.m_bytes);
};

Bytes ReadAt(CFile& file, u32 position, u32 count) {
    Bytes bytes(count);
    EXPECT_EQ(file.Seek(position, CFile::begin), position);
    bytes.resize(file.Read(bytes.data(), count));
    EXPECT_EQ(file.Seek(0, CFile::current), position + bytes.size());
    return bytes;
}

TEST(WholeReads, PlainOnes) {
    TwoFiles files;
    Random random(2);
    for (int round = 0; round < 600; ++round) {
        CRegularFile disk(files.path);
        for (u32 step = 0, here = 0; step < 6; ++step) {
            const u32 position = SomePosition(random, here);
            const u32 count = SomeSize(random) + random.Below(2) * SomeSize(random);
            const Bytes bytes = ReadAt(files.memory, position, count);
            ASSERT_EQ(ReadAt(disk, position, count), bytes) << count << " at " << position << " after " << here;
            here = position + static_cast<u32>(bytes.size());
        }
    }
}

// Everything that a reader gets in a few steps of its kinds, the same for the same seed.
Bytes Walk(CFile& file, u32 seed) {
    Random random(seed);
    ByteBuilder got;
    file.Seek(0, CFile::begin);
    CArchive archive(&file, CArchive::load);
    ArchiveByteStream stream(&archive, REFILL);
    for (u32 step = 0; step < 8; ++step) {
        stream.SetPosition(SomePosition(random, stream.GetPosition()));
        Bytes bytes(SomeSize(random) + 1);
        const u32 kind = random.Below(3), count = static_cast<u32>(bytes.size()) - 1;
        if (kind == 0) stream.GetByte(bytes[0]);
        if (kind == 1) stream.GetBytes(bytes.data(), std::min(count, REFILL));
        if (kind == 2) stream.Sync();
        if (kind == 2) stream.ReadBlock(bytes.data(), count);
        got.U32(stream.m_nStatus, stream.GetPosition()).Append(bytes);
    }
    stream.Close();
    return got;
}

TEST(WholeReads, ThroughAByteStream) {
    TwoFiles files;
    for (u32 seed = 0; seed < 400; ++seed) {
        CRegularFile disk(files.path);
        ASSERT_EQ(Walk(disk, seed), Walk(files.memory, seed)) << seed;
    }
}

}  // namespace
