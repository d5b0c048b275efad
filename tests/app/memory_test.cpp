// The windows while memory is short: whatever the limit on large blocks, a file is refused or its window stands, and
// each selection shows its picture or none.

#include "support/memory_limit.h"
#include "support/sample_files.h"
#include "window_case.h"

namespace {

constexpr u64 STEP = 8;           // bytes, fewer than any plane has
constexpr u64 REFUSED_STEP = 32;  // fewer than any object of a file that is refused
constexpr u64 MOST = 64 * 1024;
constexpr const char* EMPTY = ", and the view is empty";
const std::string NO_PICTURE = std::string(": <invalid bitmap>") + EMPTY;

struct MemoryTest : public WindowTest {
    MemoryTest() { m_answers.m_nextAnswer.nButton = IDYES; }

    // A line for each channel of each layer, with what the information pane says of it.
    Texts Walk() {
        Texts lines;
        const int layers = Layers().count();
        Press(Layers(), Qt::Key_Home);
        for (int layer = 0; layer < layers; ++layer) {
            const int channels = Channels().count();
            Press(Channels(), Qt::Key_Home);
            for (int channel = 0; channel < channels; ++channel) {
                Settle();
                lines.push_back(Layers().currentText().toStdString() + ", " + Channels().currentText().toStdString() +
                                ": " + PaneText(Frame().m_wndInfoBar) + (View().m_bValid == 0 ? EMPTY : ""));
                Press(Channels(), Qt::Key_Down);
            }
            Press(Layers(), Qt::Key_Down);
        }
        return lines;
    }

    // What the walk finds, or nothing where the file is refused.
    Texts OpenAndWalk(const std::string& strPath) {
        const Texts lines = theApp.OpenDocumentFile(strPath) ? Walk() : Texts();
        Main().DestroyChildren();
        Asked();  // of what breaks rules
        return lines;
    }
};

}  // namespace

TEST_F(MemoryTest, AnyLimitRefusesTheFileOrLeavesOutPictures) {
    for (const auto& [name, bytes] : SmallSampleFiles()) {
        const std::string path = m_folder.Write(bytes, name);
        const Texts whole = OpenAndWalk(path);
        ASSERT_FALSE(whole.empty()) << name;
        const u64 left = LargeBlock::Left();
        Texts lines;
        for (u64 limit = 0; lines != whole; limit += lines.empty() ? REFUSED_STEP : STEP) {
            SCOPED_TRACE(name + ", " + std::to_string(limit) + " bytes");
            ASSERT_LT(limit, MOST);
            {
                const MemoryLimit memory(limit);
                lines = OpenAndWalk(path);
            }
            const Texts told = Told();
            EXPECT_EQ(lines == whole, told.empty());
            for (const std::string& message : told) EXPECT_TRUE(Has(message, "not enough memory"));
            EXPECT_TRUE(!lines.empty() || told.size() == 1);
            EXPECT_EQ(lines.size(), lines.empty() ? 0 : whole.size()) << "both lists are filled";
            for (size_t i = 0; i < lines.size() && i < whole.size(); ++i)
                EXPECT_TRUE(lines[i] == whole[i] || lines[i].ends_with(NO_PICTURE)) << lines[i];
            EXPECT_EQ(LargeBlock::Left(), left) << "nothing is kept of it";
            EXPECT_EQ(OpenAndWalk(path), whole);
        }
    }
}
