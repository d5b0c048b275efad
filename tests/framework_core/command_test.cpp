#include "framework/core/cmd_target.h"
#include "framework/core/command_line.h"
#include "support/table.h"

#include <gtest/gtest.h>

namespace {

constexpr u32 FIRST = 1;
constexpr u32 SECOND = 2;
constexpr u32 NOBODY = 3;

class Base : public CCmdTarget {
  public:
    void OnFirst() { m_log += "base "; }
    void OnSecond() { m_log += "second "; }
    void OnUpdateFirst(CCmdUI* ui) { ui->Enable(false); }

    std::string m_log;

  protected:
    static inline const MessageEntry s_entries[] = {OnCommand<&Base::OnFirst>(FIRST),
        OnCommand<&Base::OnSecond>(SECOND), OnUpdateCommandUi<&Base::OnUpdateFirst>(FIRST)};
    static inline const MessageMap s_map = {&s_messageMap, s_entries};
    const MessageMap& GetMessageMap() const override { return s_map; }
};

class Derived final : public Base {
  public:
    void OnFirst() { m_log += "derived "; }
    void OnSelection() { m_log += "selection "; }
    void OnUpdateSecond(CCmdUI* ui) { ui->m_bContinueRouting = true; }

  protected:
    static inline const MessageEntry s_entries[] = {OnCommand<&Derived::OnFirst>(FIRST),
        OnControl<&Derived::OnSelection>(CBN_SELCHANGE, FIRST), OnUpdateCommandUi<&Derived::OnUpdateSecond>(SECOND)};
    static inline const MessageMap s_map = {&Base::s_map, s_entries};
    const MessageMap& GetMessageMap() const override { return s_map; }
};

class RecordedUi final : public CCmdUI {
  public:
    using CCmdUI::CCmdUI;
    void Enable(bool on) override { m_state = on ? "enabled" : "disabled"; }
    void SetCheck(int) override {}
    void SetText(const std::string&) override {}

    std::string m_state = "untouched";
};

std::string StateOf(CCmdTarget& target, u32 id, bool disableIfNoHandler = true) {
    RecordedUi ui(id);
    ui.DoUpdate(target, disableIfNoHandler);
    return ui.m_state;
}

TEST(MessageMap, TheMostDerivedHandlerOfIdAndCodeIsCalled) {
    Derived target;
    EXPECT_TRUE(target.OnCmdMsg(FIRST, CN_COMMAND, nullptr));
    EXPECT_TRUE(target.OnCmdMsg(SECOND, CN_COMMAND, nullptr));
    EXPECT_TRUE(target.OnCmdMsg(FIRST, CBN_SELCHANGE, nullptr));
    EXPECT_FALSE(target.OnCmdMsg(SECOND, CBN_SELCHANGE, nullptr));
    EXPECT_FALSE(target.OnCmdMsg(NOBODY, CN_COMMAND, nullptr));
    EXPECT_EQ(target.m_log, "derived second selection ");
}

TEST(CmdUi, TheFrameworkDecidesWhereNoUpdateHandlerDoes) {
    Derived target;
    EXPECT_EQ(StateOf(target, FIRST), "disabled") << "its own handler decides";
    EXPECT_EQ(StateOf(target, SECOND), "enabled") << "left to the framework, and a command handler is there";
    EXPECT_EQ(StateOf(target, NOBODY), "disabled");
    EXPECT_EQ(StateOf(target, NOBODY, false), "untouched");
    EXPECT_EQ(target.m_log, "") << "asking carries nothing out";
}

TEST(CommandLine, SwitchesAndFiles) {
    using Words = std::vector<const char*>;
    using Info = CCommandLineInfo;
    for (const auto& [words, command, files] : Table<Words, Info::ShellCommand, std::vector<std::string>>{
             {Words{}, Info::FileNew, {}},
             {{"b", "/a", ""}, Info::FileOpen, {"b", "/a", ""}},
             {{"--", "--help", "-x"}, Info::FileOpen, {"--help", "-x"}},
             {{"a", "--version", "-x"}, Info::ShowVersion, {"a"}},
             {{"-x", "--help"}, Info::BadSwitch, {}},
             {{"a", "-p", "b"}, Info::FilePrint, {"a", "b"}},
             {{"a", "-pt", "b", "c"}, Info::SurplusWord, {"a", "b"}},
         }) {
        std::vector<char*> argv = {const_cast<char*>("vistrel")};
        for (const char* word : words) argv.push_back(const_cast<char*>(word));
        Info info;
        info.ParseCommandLine(static_cast<int>(argv.size()), argv.data());
        EXPECT_EQ(info.m_nShellCommand, command) << testing::PrintToString(words);
        EXPECT_EQ(info.m_strFileNames, files);
    }
}

}  // namespace
