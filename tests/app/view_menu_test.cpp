// The view's own menu: what it offers, and when.

#include "window_case.h"

namespace {

class ViewMenuTest : public WindowTest {
  protected:
    // The mnemonics of what is not grey; the menu is closed again.
    std::string Offers() {
        QMenu& menu = OpenMenuOf(View(), QContextMenuEvent::Mouse);
        std::string offers;
        for (const QAction* const item : menu.actions())
            if (!item->isSeparator() && item->isEnabled())
                offers += QKeySequence::mnemonic(item->text()).toString().back().toLatin1();
        menu.close();
        Settle();
        return offers;
    }

    void Choose(Qt::Key key) {
        Press(OpenMenuOf(View(), QContextMenuEvent::Keyboard), key);
        Settle();
    }
};

}  // namespace

TEST_F(ViewMenuTest, WhatCanDoNothingIsGrey) {
    // In alphabetical order, which the next and previous one follow.
    m_folder.Write(Psd({}), "2.psd");
    Open(NoPicture(), "1.iff");
    EXPECT_EQ(Offers(), "LN") << "without a picture";
    Open(PaddedRows(), "3.iff");
    for (const auto& [scale, offers] : Table<float, std::string>{
             {0.03125f, "IALPR"}, {0.0625f, "IOALPR"}, {16, "IOALPR"}, {32, "OALPR"}, {64, "OALPR"}}) {
        Fit(scale);
        EXPECT_EQ(Offers(), offers) << scale;
    }
}

TEST_F(ViewMenuTest, EachItemDoesWhatItsKeyDoes) {
    m_folder.Write(Picture(40, 20), "2.iff");
    Open(Picture(30, 20), "1.iff");
    for (const auto& [key, size] : Table<Qt::Key, CSize>{{Qt::Key_I, {60, 40}}, {Qt::Key_O, {30, 20}},
             {Qt::Key_O, {15, 10}}, {Qt::Key_A, {30, 20}}, {Qt::Key_N, {40, 20}}, {Qt::Key_P, {30, 20}}}) {
        Choose(key);
        EXPECT_EQ(ClientSize(), size) << static_cast<char>(key);
    }
    m_folder.Write(Picture(50, 20), "1.iff");
    Choose(Qt::Key_L);
    EXPECT_EQ(ClientSize(), (CSize{50, 20}));
}

TEST_F(ViewMenuTest, TheKeyOpensItWhereThePictureIsSeen) {
    Main().MoveWindow({0, 0, 400, 300});
    Open(Picture(100, 100));
    Fit(32);
    Settle();
    const QWidget& window = *Main().GetWidget();
    const QMenu& menu = OpenMenuOf(View(), QContextMenuEvent::Keyboard);
    EXPECT_TRUE(window.rect().contains(window.mapFromGlobal(menu.pos())));
}
