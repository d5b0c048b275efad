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

// Often about the place where reading stands, and sometimes after the file's end.
u32 SomePosition(Random& random, u32 nHere) {
    const u32 way = random.Below(4), distance = way == 0 ? random.Below(9) : SomeSize(random);
    if (way == 1) return distance + SomeSize(random);
    if (way == 2) return nHere + distance;
    return nHere - std::min(nHere, distance);
}

struct TwoFiles {
    TempFolder folder;
    MemoryFile memory{Random(1).SomeBytes(3 * CRegularFile::WINDOW_SIZE + 17)};
    std::string path = folder.Write(memory.m_bytes);
};

Bytes ReadAt(CFile& file, u32 nPosition, u32 nCount) {
    Bytes bytes(nCount + 1);  // never none at all
    EXPECT_EQ(file.Seek(nPosition, CFile::begin), nPosition);
    bytes.resize(file.Read(bytes.data(), nCount));
    EXPECT_EQ(file.Seek(0, CFile::current), nPosition + bytes.size());
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

TEST(WholeReads, ThroughAByteStream) {
    TwoFiles files;
    const Bytes& bytes = files.memory.m_bytes;
    Random random(3);
    for (int round = 0; round < 800; ++round) {
        CRegularFile disk(files.path);
        files.memory.Seek(0, CFile::begin);
        CArchive archive(round % 2 ? &disk : static_cast<CFile*>(&files.memory), CArchive::load);
        ArchiveByteStream stream(&archive, REFILL);
        for (int step = 0; step < 8; ++step) {
            const u32 position = SomePosition(random, stream.GetPosition()) % (3 * CRegularFile::WINDOW_SIZE);
            const u32 left = static_cast<u32>(bytes.size()) - position, way = random.Below(3);
            const u32 most[] = {1, SomeSize(random) % (REFILL + 1), SomeSize(random)};
            const u32 count = std::min(left, most[way]);
            Bytes got(count + 1);
            stream.SetPosition(position);
            if (way == 0) stream.GetByte(got[0]);
            if (way == 1) stream.GetBytes(got.data(), count);
            if (way == 2) stream.Sync();
            if (way == 2) stream.ReadBlock(got.data(), count);
            ASSERT_TRUE(stream.IsGood() && stream.GetPosition() == position + count);
            ASSERT_TRUE(std::equal(&bytes[position], &bytes[position] + count, got.begin()))
                << count << " at " << position;
        }
        stream.Close();
    }
}

}  // namespace
