// The windows while memory is short: whatever the limit on large blocks, a file is refused or its window stands, and
// each selection shows its picture or none.

#include "support/memory_limit.h"
#include "support/sample_files.h"
#include "window_case.h"

namespace {

constexpr u64 STEP = 8;  // bytes, fewer than any plane has
constexpr u64 MOST = 64 * 1024;

struct MemoryTest : public WindowTest {
    // A line for each layer, with what the information pane says of each of its channels.
    Texts Walk() {
        Texts lines;
        const int layers = ListOf(Frame().m_wndLayerCombo).count();
        Press(Frame().m_wndLayerCombo, Qt::Key_Home);
        for (int layer = 0; layer < layers; ++layer) {
            std::string line;
            const int channels = ListOf(Frame().m_wndChannelCombo).count();
            Press(Frame().m_wndChannelCombo, Qt::Key_Home);
            for (int channel = 0; channel < channels; ++channel) {
                Settle();
                line += ListOf(Frame().m_wndChannelCombo).currentText().toStdString() + ' ' +
                        PaneText(Frame().m_wndInfoBar) + (View().m_bValid == 0 ? " empty; " : "; ");
                Press(Frame().m_wndChannelCombo, Qt::Key_Down);
            }
            lines.push_back(line);
            Press(Frame().m_wndLayerCombo, Qt::Key_Down);
        }
        return lines;
    }

    // What the walk finds, or nothing where the file is refused.
    Texts OpenAndWalk(const std::string& strPath) {
        const Texts lines = theApp.OpenDocumentFile(strPath) ? Walk() : Texts();
        Main().DestroyChildren();
        return lines;
    }
};

}  // namespace

TEST_F(MemoryTest, AnyLimitRefusesTheFileOrLeavesOutPictures) {
    for (const auto& [name, bytes] : SmallSampleFiles()) {
        const std::string path = m_folder.Write(bytes, name);
        const Texts whole = OpenAndWalk(path);
        const u64 left = LargeBlock::Left();
        Texts lines;
        for (u64 limit = 0; lines != whole; limit += STEP) {
            SCOPED_TRACE(name + ", " + std::to_string(limit) + " bytes");
            ASSERT_LT(limit, MOST);
            m_answers.m_messages.clear();
            {
                const MemoryLimit memory(limit);
                lines = OpenAndWalk(path);
            }
            EXPECT_EQ(lines == whole, m_answers.m_messages.empty());
            for (const std::string& message : m_answers.m_messages)
                EXPECT_NE(message.find("not enough memory"), std::string::npos) << message;
            EXPECT_TRUE(!lines.empty() || m_answers.m_messages.size() == 1);
            EXPECT_EQ(lines.size(), lines.empty() ? 0 : whole.size()) << "both lists are filled";
            EXPECT_EQ(LargeBlock::Left(), left) << "nothing is kept of it";
            EXPECT_EQ(OpenAndWalk(path), whole);
        }
    }
}
