#include "framework/core/cmd_target.h"
#include "framework/core/command_line.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

constexpr u32 FIRST = 1, SECOND = 2, NOBODY = 3;

// A map over a base map, as a class and its base have them.
struct Target final : public CCmdTarget {
    void OnBase() { m_log += "base "; }
    void OnFirst() { m_log += "first "; }
    void OnUpdateFirst(CCmdUI* pUi) { pUi->Enable(false); }
    void OnUpdateSecond(CCmdUI* pUi) { pUi->m_bContinueRouting = true; }

    static const MessageMap s_base;
    static const MessageMap s_map;
    const MessageMap& GetMessageMap() const override { return s_map; }

    std::string m_log;
};

const MessageEntry BASE_ENTRIES[] = {OnCommand<&Target::OnBase>(FIRST), OnCommand<&Target::OnBase>(SECOND)};
const MessageMap Target::s_base = {&s_messageMap, BASE_ENTRIES};
const MessageEntry ENTRIES[] = {OnUpdateCommandUi<&Target::OnUpdateFirst>(FIRST),
    OnUpdateCommandUi<&Target::OnUpdateSecond>(SECOND), OnCommand<&Target::OnFirst>(FIRST)};
const MessageMap Target::s_map = {&s_base, ENTRIES};

struct RecordedUi final : public CCmdUI {
    using CCmdUI::CCmdUI;
    void Enable(bool bOn) override { m_state = bOn ? "enabled" : "disabled"; }
    void SetCheck(int) override {}
    void SetText(const std::string&) override {}

    std::string m_state = "untouched";
};

TEST(MessageMap, TheMostDerivedHandlerOfIdAndCodeIsCalled) {
    Target target;
    EXPECT_TRUE(target.OnCmdMsg(FIRST, CN_COMMAND, nullptr));
    EXPECT_TRUE(target.OnCmdMsg(SECOND, CN_COMMAND, nullptr));
    EXPECT_FALSE(target.OnCmdMsg(SECOND, CBN_SELCHANGE, nullptr));
    EXPECT_EQ(target.m_log, "first base ");
}

TEST(CmdUi, TheFrameworkDecidesWhereNoUpdateHandlerDoes) {
    Target target;
    for (const auto& [id, disableIfNoHandler, state] : Table<u32, bool, const char*>{
             {FIRST, true, "disabled"},  // its own handler decides
             {SECOND, true, "enabled"},  // left to the framework, and a command handler is there
             {NOBODY, true, "disabled"},
             {NOBODY, false, "untouched"},
         }) {
        RecordedUi ui(id);
        ui.DoUpdate(target, disableIfNoHandler);
        EXPECT_EQ(ui.m_state, state) << id;
    }
    EXPECT_EQ(target.m_log, "") << "asking carries nothing out";
}

TEST(CommandLine, SwitchesAndFiles) {
    using Info = CCommandLineInfo;
    for (const auto& [words, command, files] :
        Table<std::vector<const char*>, Info::ShellCommand, std::vector<std::string>>{
            {{"vistrel"}, Info::FileNew, {}},
            {{"vistrel", "b", "/a", ""}, Info::FileOpen, {"b", "/a", ""}},
            {{"vistrel", "--", "--help", "-x"}, Info::FileOpen, {"--help", "-x"}},
            {{"vistrel", "a", "--version", "-x"}, Info::ShowVersion, {"a"}},
            {{"vistrel", "-x", "--help"}, Info::BadSwitch, {}},
            {{"vistrel", "a", "-pt", "b", "c"}, Info::SurplusWord, {"a", "b"}},
        }) {
        Info info;
        info.ParseCommandLine(static_cast<int>(words.size()), const_cast<char**>(words.data()));
        EXPECT_EQ(info.m_nShellCommand, command) << testing::PrintToString(words);
        EXPECT_EQ(info.m_fileNames, files);
    }
}

}  // namespace
