// The view's own menu: what it offers, and when.

#include "support/psd_builder.h"
#include "window_case.h"

#include <QContextMenuEvent>
#include <QMdiSubWindow>

namespace {

class ViewMenuTest : public WindowTest {
  protected:
    // As the pointer or its key opens it.
    QMenu& OpenMenu(QContextMenuEvent::Reason reason) {
        QWidget& view = *View().GetWidget();
        // The toolkit gives the key the middle of the view.
        const QPoint place = reason == QContextMenuEvent::Mouse ? QPoint(1, 1) : view.rect().center();
        QContextMenuEvent event(reason, place, view.mapToGlobal(place));
        QApplication::sendEvent(&view, &event);
        return dynamic_cast<QMenu&>(*QApplication::activePopupWidget());
    }

    // The mnemonics of what is not grey; the menu is closed again.
    std::string Offers() {
        QMenu& menu = OpenMenu(QContextMenuEvent::Mouse);
        std::string offers;
        for (const QAction* const item : menu.actions())
            if (!item->isSeparator() && item->isEnabled())
                offers += QKeySequence::mnemonic(item->text()).toString().back().toLatin1();
        menu.close();
        Settle();
        return offers;
    }

    void Choose(Qt::Key key) {
        OpenMenu(QContextMenuEvent::Keyboard);
        QTest::keyClick(QApplication::activePopupWidget(), key);
        Settle();
    }
};

}  // namespace

TEST_F(ViewMenuTest, WhatCanDoNothingIsGrey) {
    // In alphabetical order, which the next and previous one follow.
    m_folder.Write(Psd({}), "2.psd");
    ASSERT_TRUE(OpenFile(Form("ILBM", {Bmhd({.width = 8, .height = 8})}), "1.iff"));
    EXPECT_EQ(Offers(), "LN") << "without a picture";
    // Padding that shows as picture under the strict rules.
    ASSERT_TRUE(OpenFile(
        Form("ILBM", {Bmhd({.width = 8, .height = 2}), GreyCmap(2, 255), Chunk("BODY", {1, 0, 1, 0})}), "3.iff"));
    for (const auto& [scale, offers] : Table<float, std::string>{
             {0.03125f, "IALPR"}, {0.0625f, "IOALPR"}, {16, "IOALPR"}, {32, "OALPR"}, {64, "OALPR"}}) {
        View().FitFrameToImage(scale);
        EXPECT_EQ(Offers(), offers) << scale;
    }
}

TEST_F(ViewMenuTest, EachItemDoesWhatItsKeyDoes) {
    m_folder.Write(Picture(40, 20), "2.iff");
    ASSERT_TRUE(OpenFile(Picture(30, 20), "1.iff"));
    for (const auto& [key, size] : Table<Qt::Key, CSize>{{Qt::Key_I, {60, 40}}, {Qt::Key_O, {30, 20}},
             {Qt::Key_O, {15, 10}}, {Qt::Key_A, {30, 20}}, {Qt::Key_N, {40, 20}}, {Qt::Key_P, {30, 20}}}) {
        Choose(key);
        EXPECT_EQ(ClientSize(), size) << static_cast<char>(key);
    }
    m_folder.Write(Picture(50, 20), "1.iff");
    Choose(Qt::Key_L);
    EXPECT_EQ(ClientSize(), (CSize{50, 20}));
    EXPECT_TRUE(m_answers.m_messages.empty());
}

TEST_F(ViewMenuTest, TheKeyOpensItWhereThePictureIsSeen) {
    Main().MoveWindow({0, 0, 400, 300});
    ASSERT_TRUE(OpenFile(Picture(100, 100)));
    View().FitFrameToImage(32);
    Settle();
    const QWidget& window = *Main().GetWidget();
    const QMenu& menu = OpenMenu(QContextMenuEvent::Keyboard);
    EXPECT_TRUE(window.rect().contains(window.mapFromGlobal(menu.pos())));
}
