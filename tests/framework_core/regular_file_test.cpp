#include "framework/core/regular_file.h"

#include "framework/core/exception.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

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
