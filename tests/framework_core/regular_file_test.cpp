#include "framework/core/regular_file.h"

#include "framework/core/exception.h"
#include "support/random.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

class RegularFileTest : public testing::Test {
  protected:
    RegularFileTest() {
        m_folder = std::filesystem::temp_directory_path() / "vistrel-test-XXXXXX";
        if (!mkdtemp(m_folder.data())) ADD_FAILURE() << "no folder for the test";
    }
    ~RegularFileTest() override { std::filesystem::remove_all(m_folder); }

    std::string Write(const Bytes& bytes) {
        std::ofstream(Path("file"), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return Path("file");
    }
    std::string Path(const std::string& name) const { return m_folder + "/" + name; }

    std::string m_folder;
};

TEST_F(RegularFileTest, ReadsWhatStandsAtEveryPosition) {
    Random random(1);
    const Bytes bytes = random.SomeBytes(3 * CRegularFile::WINDOW_SIZE + 17);
    CRegularFile file(Write(bytes));
    ASSERT_EQ(file.GetLength(), bytes.size());
    for (int i = 0; i < 2000; ++i) {
        const u64 position = random() % (bytes.size() + 10);
        const u32 wanted = i % 50 == 0 ? 2 * CRegularFile::WINDOW_SIZE : random.Below(3000);
        const u64 there = position < bytes.size() ? std::min<u64>(wanted, bytes.size() - position) : 0;
        Bytes got(wanted + 1);
        ASSERT_EQ(file.Seek(static_cast<i64>(position), CFile::begin), position);
        ASSERT_EQ(file.Read(got.data(), wanted), there);
        ASSERT_EQ(file.Seek(0, CFile::current), position + there);
        ASSERT_TRUE(std::equal(got.begin(), got.begin() + static_cast<i64>(there),
                               bytes.begin() + static_cast<i64>(position)));
    }
}

TEST_F(RegularFileTest, NoPositionBeforeTheFirstByte) {
    CRegularFile file(Write(Bytes(10)));
    EXPECT_EQ(file.Seek(-4, CFile::end), 6u);
    EXPECT_EQ(file.Seek(-6, CFile::current), 0u);
    file.Seek(3, CFile::begin);
    EXPECT_THROW(file.Seek(-4, CFile::current), CFileException);
    EXPECT_EQ(file.Seek(0, CFile::current), 3u);
    EXPECT_THROW(file.Write("x", 1), CFileException);
}

TEST_F(RegularFileTest, AFileThatShrinksGivesAShortCount) {
    const std::string path = Write(Bytes(4 * CRegularFile::WINDOW_SIZE));
    CRegularFile file(path);
    Bytes out(3 * CRegularFile::WINDOW_SIZE);
    ASSERT_EQ(file.Read(out.data(), 10), 10u);
    ASSERT_EQ(truncate(path.c_str(), CRegularFile::WINDOW_SIZE + 100), 0);
    EXPECT_EQ(file.Read(out.data(), 3 * CRegularFile::WINDOW_SIZE), CRegularFile::WINDOW_SIZE + 90);
    EXPECT_EQ(file.Read(out.data(), 10), 0u);
}

TEST_F(RegularFileTest, RefusesWhatIsNoFile) {
    ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
    const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, Path("socket").c_str(), sizeof(address.sun_path) - 1);
    ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);

    const auto reason = [](const std::string& path) -> std::string {
        try {
            CRegularFile file(path);
            return "opened";
        } catch (const CFileException& exception) {
            return exception.what();
        }
    };
    EXPECT_EQ(reason(m_folder), "It is a folder");
    EXPECT_EQ(reason(Path("pipe")), "It is a pipe");
    EXPECT_EQ(reason(Path("socket")), "It is a socket");
    EXPECT_EQ(reason("/dev/zero"), "It is a device");
    EXPECT_EQ(reason(Path("missing")), "It cannot be opened: No such file or directory");
    EXPECT_EQ(reason(Write({})), "opened");
    close(listener);
}

}  // namespace
