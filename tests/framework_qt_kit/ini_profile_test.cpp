// The settings file, with other programs about.

#include "framework/qt/kit/ini_profile.h"

#include "support/private_home.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sys/wait.h>
#include <unistd.h>

namespace {

class IniProfileTest : public testing::Test {
  protected:
    PrivateHome m_home;
    const std::filesystem::path m_folder = m_home.m_folder.Path("config");
};

}  // namespace

TEST_F(IniProfileTest, ProgramsThatWriteAtOnceLoseNothing) {
    constexpr int PROGRAMS = 4;
    constexpr int CHANGES = 10;
    for (int program = 0; program < PROGRAMS; ++program) {
        if (fork() != 0) continue;
        IniProfile profile("Maker\\Inside", "Program");
        bool done = true;
        for (int i = 0; i < CHANGES; ++i)
            done &= profile.ChangeSection("A List", [&](ProfileSection& section) {
                section["Entry" + std::to_string(program * CHANGES + i)] = "a, b; \"%\\";
            });
        _exit(done ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    while (wait(&status) > 0) EXPECT_EQ(status, 0);

    EXPECT_TRUE(std::filesystem::exists(m_folder / "Maker/Inside/Program.ini"));
    const ProfileSection section = IniProfile("Maker\\Inside", "Program").ReadSection("A List");
    EXPECT_EQ(section.size(), static_cast<std::size_t>(PROGRAMS * CHANGES));
    for (const auto& [name, text] : section) EXPECT_EQ(text, "a, b; \"%\\") << name;
}

TEST_F(IniProfileTest, ADamagedFileIsWrittenAnewAndOneThatCannotBeIsLeft) {
    std::filesystem::create_directories(m_folder / "Maker");
    for (const std::string damage : {"[Lis", "no line of any kind", "\xFF\xFE\x01[[]=\n%%%=\x02"}) {
        std::ofstream(m_folder / "Maker/Program.ini") << damage;
        IniProfile profile("Maker", "Program");
        EXPECT_EQ(profile.ReadSection("List"), ProfileSection());
        EXPECT_TRUE(profile.ChangeSection("List", [](ProfileSection& section) { section["a"] = "b"; })) << damage;
        EXPECT_EQ(IniProfile("Maker", "Program").ReadSection("List"), (ProfileSection{{"a", "b"}})) << damage;
    }
    // A folder in the file's place.
    std::filesystem::create_directories(m_folder / "Maker/Other.ini");
    EXPECT_FALSE(IniProfile("Maker", "Other").ChangeSection("List", [](ProfileSection&) {}));
}

TEST_F(IniProfileTest, ALinkAndPermissionsStay) {
    using std::filesystem::perms;
    std::filesystem::create_directories(m_folder / "Maker");
    const std::filesystem::path target = m_home.m_folder.Write({}, "mine.ini");
    std::filesystem::permissions(target, perms::owner_read | perms::owner_write | perms::group_read);
    std::filesystem::create_symlink(target, m_folder / "Maker/Program.ini");
    IniProfile profile("Maker", "Program");
    EXPECT_TRUE(profile.ChangeSection("List", [](ProfileSection& section) { section["a"] = "b"; }));
    EXPECT_TRUE(std::filesystem::is_symlink(m_folder / "Maker/Program.ini"));
    EXPECT_GT(std::filesystem::file_size(target), 0u);
    EXPECT_EQ(
        std::filesystem::status(target).permissions(), perms::owner_read | perms::owner_write | perms::group_read);
}
