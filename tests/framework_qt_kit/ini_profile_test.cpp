// The settings file, for which its user has put another one.

#include "framework/qt/kit/ini_profile.h"

#include "support/private_home.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(IniProfile, ALinkAndPermissionsStay) {
    using std::filesystem::perms;
    const PrivateHome home;
    const std::filesystem::path folder = home.m_folder.Path("config/Maker");
    std::filesystem::create_directories(folder);
    const std::filesystem::path target = home.m_folder.Write({}, "mine.ini");
    std::filesystem::permissions(target, perms::owner_read | perms::owner_write | perms::group_read);
    std::filesystem::create_symlink(target, folder / "Program.ini");
    IniProfile profile("Maker", "Program");
    EXPECT_TRUE(profile.ChangeSection("List", [](ProfileSection& section) { section["a"] = "b"; }));
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "Program.ini"));
    EXPECT_GT(std::filesystem::file_size(target), 0u);
    EXPECT_EQ(
        std::filesystem::status(target).permissions(), perms::owner_read | perms::owner_write | perms::group_read);
}
