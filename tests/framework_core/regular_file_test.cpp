#include "framework/core/regular_file.h"

#include "framework/core/exception.h"
#include "support/random.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <cstring>
#include <unistd.h>

constexpr u32 WINDOW = CRegularFile::WINDOW_SIZE;

TEST(RegularFile, ReadsWhatStandsAtEveryPosition) {
    const TempFolder folder;
    Random random(1);
    const Bytes bytes = random.SomeBytes(3 * WINDOW + 17);
    CRegularFile file(folder.Write(bytes));
    for (int i = 0; i < 2000; ++i) {
        const u64 position = random() % (bytes.size() + 10);
        const u32 wanted = i % 50 == 0 ? 2 * WINDOW : random.Below(3000);
        const u64 there = position < bytes.size() ? std::min<u64>(wanted, bytes.size() - position) : 0;
        Bytes got(wanted + 1);
        ASSERT_EQ(file.Seek(static_cast<i64>(position), CFile::begin), position);
        ASSERT_EQ(file.Read(got.data(), wanted), there);
        ASSERT_EQ(file.Seek(0, CFile::current), position + there);
        ASSERT_EQ(std::memcmp(got.data(), bytes.data() + std::min(position, bytes.size()), there), 0);
    }
}

TEST(RegularFile, SmallReadsShareOneWindow) {
    const TempFolder folder;
    CRegularFile file(folder.Write(Bytes(100, 'a')));
    char letters[3] = {};
    file.Read(letters, 1);
    folder.Write(Bytes(100, 'b'));
    file.Read(letters + 1, 1);
    EXPECT_STREQ(letters, "aa") << "the second byte was read with the first";
}

TEST(RegularFile, NoPositionBeforeTheFirstByte) {
    const TempFolder folder;
    CRegularFile file(folder.Write(Bytes(10)));
    EXPECT_EQ(file.Seek(-4, CFile::end), 6u);
    EXPECT_THROW(file.Seek(-7, CFile::current), CFileException);
    EXPECT_EQ(file.Seek(-6, CFile::current), 0u);
    EXPECT_THROW(file.Write("x", 1), CFileException);
}

TEST(RegularFile, OneThatShrinksGivesAShortCount) {
    const TempFolder folder;
    const std::string path = folder.Write(Bytes(4 * WINDOW));
    CRegularFile file(path);
    Bytes out(3 * WINDOW);
    ASSERT_EQ(file.Read(out.data(), 10), 10u);
    ASSERT_EQ(truncate(path.c_str(), WINDOW + 100), 0);
    EXPECT_EQ(file.Read(out.data(), 3 * WINDOW), WINDOW + 90);
    EXPECT_EQ(file.Read(out.data(), 10), 0u);
}
