#include "framework/qt/program/recent_files.h"

#include <gtest/gtest.h>

namespace {

struct MemoryProfile final : public Profile {
    ProfileSection ReadSection(const std::string&) const override { return m_section; }
    bool ChangeSection(const std::string&, const std::function<void(ProfileSection&)>& change) override {
        if (m_bWritable) change(m_section);
        return m_bWritable;
    }

    ProfileSection m_section;
    bool m_bWritable = true;
};

std::string Paths(const CRecentFileList& list) {
    std::string paths;
    for (u32 i = 0; i < list.GetSize(); ++i) paths += (i ? " " : "") + list[i];
    return paths;
}

TEST(RecentFiles, TheLatestComesFirstAndTwoProgramsKeepOneList) {
    MemoryProfile profile;
    CRecentFileList first(3), second(3);
    for (const char* path : {"/x", "/b", "/x", "/a\xFF %", "/b"}) first.Add(path);
    EXPECT_EQ(Paths(first), "/b /a\xFF % /x");
    EXPECT_TRUE(first.WriteList(profile));
    second.Add("/c");
    EXPECT_TRUE(second.WriteList(profile));
    EXPECT_EQ(Paths(second), "/c /b /a\xFF %");

    profile.m_bWritable = false;
    first.Add("/d");
    first.Remove("/b");
    EXPECT_FALSE(first.WriteList(profile));
    profile.m_bWritable = true;
    EXPECT_TRUE(first.WriteList(profile));
    second.ReadList(profile);
    for (const CRecentFileList* list : {&first, &second}) EXPECT_EQ(Paths(*list), "/d /c");
}

TEST(RecentFiles, WhatIsKeptMayBeDamaged) {
    MemoryProfile profile;
    profile.m_section = {{"File1", "nonsense"}, {"File3", "file:///x"}, {"File4", "file:///x"}, {"File9", "file:///y"},
        {"File10", "file:///z"}};
    CRecentFileList list(9);
    list.ReadList(profile);
    EXPECT_EQ(Paths(list), "/x /y");
}

}  // namespace
