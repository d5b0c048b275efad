// The tool bar and the bar with the two lists, where they dock and how they float.
#include "window_case.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QLabel>
#include <QPointer>
#include <QRubberBand>
#include <QScreen>
#include <QTextDocumentFragment>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>

namespace {

// Empty when none shows.
std::string TipOf(QWidget& widget, const QPoint& at) {
    QToolTip::hideText();
    EXPECT_TRUE(WaitFor([] { return !QToolTip::isVisible(); }));
    QHelpEvent help(QEvent::ToolTip, at, widget.mapToGlobal(at));
    QApplication::sendEvent(&widget, &help);
    if (!QToolTip::isVisible()) return {};
    return QTextDocumentFragment::fromHtml(QToolTip::text()).toPlainText().toStdString();
}

// The frame that a bar floats in; null while it does not.
QWidget* FloatingFrame(const QToolBar& bar) {
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (window->isVisible() && window->windowType() == Qt::Tool && window->windowTitle() == bar.windowTitle())
            return window;
    return nullptr;
}

QRubberBand* Outline() {
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (auto* const outline = qobject_cast<QRubberBand*>(window)) return outline;
    return nullptr;
}

// From a place in the widget to one on the screen. What the outline shows at last; empty without one.
QRect Drag(QWidget& widget, const QPoint& from, const QPoint& onScreen) {
    MousePress(widget, widget.mapToGlobal(from));
    const QPoint start = widget.mapToGlobal(from);
    MouseMove(widget, (start + onScreen) / 2);
    MouseMove(widget, onScreen);
    const QRect outline = Outline() ? Outline()->geometry() : QRect();
    MouseRelease(widget, onScreen);
    return outline;
}

constexpr QPoint CAPTION(20, 10);  // in a floating frame
constexpr QPoint GRIP(3, 10);      // in a docked bar

bool Wheel(QWidget& list) { return TurnWheel(list, {5, 5}, -NOTCH); }

class BarsTest : public WindowTest {
  protected:
    BarsTest() { Open(Picture(800, 400)); }

    static QWidget& Strip() { return *Layers().parentWidget()->parentWidget(); }

    static void AddLayer(const std::string& strName) { AddEntry(Frame().m_wndLayerCombo, strName); }

    static QToolBar& LayerBar() { return *static_cast<QToolBar*>(Frame().m_wndLayerBar.GetWidget()); }
    static QMainWindow& MainWindow() { return *Main().GetBarHost(); }
    static QToolBar& ToolBar() { return *MainWindow().findChild<QToolBar*>(); }

    // In the menu of the child.
    static void ToggleFloating() { SubWindow().systemMenu()->actions().last()->trigger(); }

    static void ChooseLayer(u64 nPosition) { SendMessageA(&Frame().m_wndLayerCombo, CB_SETCURSEL, nPosition, 0); }

    // By the grip, into the middle of the frame.
    static void BeginDrag() {
        const QPoint from = LayerBar().mapToGlobal(GRIP);
        MousePress(LayerBar(), from);
        MouseMove(LayerBar(), from + QPoint(50, 200));
    }
};

}  // namespace

TEST_F(BarsTest, AListDropsDownToItsTemplatesHeightWithAScrollBar) {
    for (int i = 1; i < 200; ++i) AddLayer("Mip Map " + std::to_string(i));
    Layers().showPopup();
    const QAbstractItemView& list = *Layers().view();
    EXPECT_LE(list.height(), Layers().fontMetrics().height() * 66 / 8);
    EXPECT_GT(list.height(), Layers().fontMetrics().height() * 50 / 8);
    EXPECT_TRUE(list.verticalScrollBar()->isVisible());
    Layers().hidePopup();
}

TEST_F(BarsTest, ACutEntryKeepsBothEndsAndShowsWholeInATip) {
    const std::string name(40, 'n');
    AddLayer(name + "1");
    AddLayer(name + "2");
    std::vector<QImage> pictures;
    for (const u64 position : {1, 2}) {
        ChooseLayer(position);
        pictures.push_back(Layers().grab().toImage());
        EXPECT_EQ(TipOf(Layers(), {5, 5}), name + std::to_string(position));
    }
    EXPECT_NE(pictures[0], pictures[1]);
    ChooseLayer(0);
    EXPECT_EQ(TipOf(Layers(), {5, 5}), "") << "there is room for it";

    Layers().showPopup();
    QAbstractItemView& list = *Layers().view();
    const auto entry = [&](int nRow) { return list.visualRect(list.model()->index(nRow, 0)); };
    EXPECT_NE(list.viewport()->grab(entry(1)).toImage(), list.viewport()->grab(entry(2)).toImage());
    EXPECT_EQ(TipOf(*list.viewport(), entry(2).center()), name + "2");
    EXPECT_EQ(TipOf(*list.viewport(), entry(0).center()), "");
    Layers().hidePopup();
}

TEST_F(BarsTest, ACaptionTellsWhereItsFileIs) { EXPECT_EQ(TipOf(SubWindow(), {100, 5}), m_folder.Path("picture.iff")); }

TEST_F(BarsTest, TheWheelChoosesInAListThatHasTheFocusAndScrollsWhatLiesBelowAnother) {
    AddLayer("second");
    GiveFocus(*View().GetWidget());
    EXPECT_FALSE(Wheel(Layers()));
    EXPECT_EQ(Layers().currentIndex(), 0);

    GiveFocus(Layers());
    EXPECT_TRUE(Wheel(Layers()));
    EXPECT_EQ(Layers().currentIndex(), 1);
}

TEST_F(BarsTest, NarrowListsShrinkToSixLettersAndThenAButtonOpensThemAll) {
    const int letters = Layers().fontMetrics().horizontalAdvance("nnnnnn");
    QWidget& strip = Strip();
    QToolButton* const more = strip.findChild<QToolButton*>();
    const QWidget* const channelLabel = Channels().parentWidget()->findChildren<QLabel*>()[1];
    const int templateWidth = strip.sizeHint().width();
    const QRect layers = Layers().geometry();
    const QRect channels = Channels().geometry();
    int least = 0;  // at which both lists are in sight
    for (int width = templateWidth + 20; width > 0; --width) {
        SCOPED_TRACE(width);
        strip.resize(width, strip.height());
        if (width >= templateWidth) {
            EXPECT_EQ(Layers().geometry(), layers);
            EXPECT_EQ(Channels().geometry(), channels);
        }
        EXPECT_TRUE(Layers().isVisible() && Channels().isVisible()) << "they keep their keys";
        if (more->isHidden() && width >= 12) {
            EXPECT_LE(Channels().geometry().right(), width);
            EXPECT_GE(Layers().width(), letters);
            EXPECT_GE(Channels().width(), letters);
            EXPECT_GE(channelLabel->x(), Layers().geometry().right());
            EXPECT_GE(Channels().x(), channelLabel->geometry().right());
            least = width;
        }
        if (!more->isHidden()) {
            EXPECT_LE(more->geometry().right(), width);
            EXPECT_GE(more->width(), 12);
        }
        EXPECT_EQ(!more->isHidden(), width < least && width >= 12);
    }
    EXPECT_LT(least, templateWidth - letters) << "the lists have given what they can";
    EXPECT_GT(least, 2 * letters);
}

TEST_F(BarsTest, ALayerOfASmallPictureIsChosenWithTheMouseAlone) {
    Main().DestroyChildren();
    Open(Picture(16, 16));
    AddLayer("second");
    Settle();
    QWidget& strip = Strip();
    QToolButton* const more = strip.findChild<QToolButton*>();
    EXPECT_TRUE(more->isVisible());
    EXPECT_TRUE(View().GetWidget()->width() >= strip.width());
    QWidget* panel = nullptr;
    for (const int width : {1000, 150}) {
        if (panel) panel->close();
        Main().MoveWindow({0, 0, width, 700});
        more->click();
        panel = QApplication::activePopupWidget();
        ASSERT_TRUE(panel && panel->isAncestorOf(&Layers()) && panel->isAncestorOf(&Channels()));
        EXPECT_LE(panel->width(), MainWindow().width());
        EXPECT_TRUE(panel->rect().contains(QRect(Layers().mapTo(panel, QPoint(0, 0)), Layers().size())));
        EXPECT_TRUE(panel->rect().contains(QRect(Channels().mapTo(panel, QPoint(0, 0)), Channels().size())));
        EXPECT_FALSE(Layers().geometry().intersects(Channels().geometry()));
        EXPECT_GT(Layers().width(), 20) << width;
    }
    Layers().showPopup();
    for (QWidget* const next : {panel, static_cast<QWidget*>(nullptr)}) {
        QTest::keyClick(QApplication::activePopupWidget()->windowHandle(), Qt::Key_Escape);
        EXPECT_EQ(QApplication::activePopupWidget(), next) << "the list closes first";
    }
    EXPECT_TRUE(strip.isAncestorOf(&Layers()) && Layers().isVisible());
}

TEST_F(BarsTest, ABarDocksAtTheEdgesItIsMeantForAndFloatsElsewhere) {
    constexpr Qt::ToolBarArea NONE = Qt::NoToolBarArea;
    SubWindow().move(0, 0);  // all of it in sight
    for (const auto& [bar, host, hasSides] : Table<QToolBar*, QMainWindow*, bool>{
             {&ToolBar(), &MainWindow(), true}, {&LayerBar(), Frame().GetBarHost(), false}}) {
        const int right = host->width() - 5;
        const int bottom = host->height() - 5;
        const int middle = host->height() / 2;
        for (const auto& [x, y, area] : Table<int, int, Qt::ToolBarArea>{{200, bottom, Qt::BottomToolBarArea},
                 {5, middle, hasSides ? Qt::LeftToolBarArea : NONE},
                 {right, middle, hasSides ? Qt::RightToolBarArea : NONE}, {200, middle, NONE},
                 {200, 5, Qt::TopToolBarArea}}) {
            QWidget* const frame = FloatingFrame(*bar);
            const QRect outline = Drag(frame ? *frame : *bar, frame ? CAPTION : GRIP, host->mapToGlobal(QPoint(x, y)));
            EXPECT_EQ(bar->isVisible() ? host->toolBarArea(bar) : NONE, area) << hasSides << " at " << x << ", " << y;
            const QWidget* const floating = FloatingFrame(*bar);
            EXPECT_EQ(floating != nullptr, area == NONE);
            if (floating && !outline.isEmpty()) {
                EXPECT_EQ(floating->size(), outline.size()) << hasSides;
            }
        }
    }
}

TEST_F(BarsTest, ABarFloatsWhereAndAsWideAsItFloatedLast) {
    for (const auto& [bar, host] :
        Table<QToolBar*, QMainWindow*>{{&ToolBar(), &MainWindow()}, {&LayerBar(), Frame().GetBarHost()}}) {
        SCOPED_TRACE(bar->windowTitle().toStdString());
        Drag(*bar, GRIP, Frame().GetBarHost()->mapToGlobal(QPoint(300, 200)));
        QWidget* frame = FloatingFrame(*bar);
        ASSERT_TRUE(frame);
        const QSize before = frame->size();
        Drag(*frame, {before.width() - 1, before.height() / 2}, frame->mapToGlobal(QPoint(before.width() / 2, 0)));
        EXPECT_LT(frame->width(), before.width());
        EXPECT_TRUE(bar == &LayerBar() || frame->height() > before.height()) << "its buttons need a second row";
        const QRect place = frame->geometry();
        for (const bool isDragged : {true, false}) {
            if (isDragged)
                Drag(*frame, CAPTION, host->mapToGlobal(QPoint(200, 5)));
            else
                DoubleClick(*frame, CAPTION);
            EXPECT_FALSE(FloatingFrame(*bar));
            EXPECT_TRUE(bar->isVisible());
            DoubleClick(*bar, GRIP);
            frame = FloatingFrame(*bar);
            ASSERT_TRUE(frame);
            EXPECT_EQ(frame->geometry(), place) << isDragged;
        }
        DoubleClick(*frame, CAPTION);
    }
}

// With the key for it, wherever nothing else takes that.
TEST_F(BarsTest, TheToolBarFloatsFromItsMenu) {
    const auto takeItem = [] {
        Later([] {
            QMenu& menu = OpenMenu();
            const QRect window(MainWindow().mapToGlobal(QPoint(0, 0)), MainWindow().size());
            EXPECT_TRUE(window.contains(menu.geometry()) || FloatingFrame(ToolBar()));
            menu.setActiveAction(menu.actions()[0]);
            Press(menu, Qt::Key_Return);
        });
        WantMenu(*MainWindow().centralWidget(), {1, 1}, QContextMenuEvent::Keyboard);
        Settle();
    };
    Main().MoveWindow({0, 0, 400, 600});
    MainWindow().addToolBar(Qt::RightToolBarArea, &ToolBar());
    Settle();
    takeItem();
    ASSERT_TRUE(FloatingFrame(ToolBar()));
    EXPECT_FALSE(ToolBar().isVisible());
    takeItem();
    EXPECT_FALSE(FloatingFrame(ToolBar()));
    EXPECT_TRUE(ToolBar().isVisible());
    MainWindow().addToolBar(Qt::TopToolBarArea, &ToolBar());
}

TEST_F(BarsTest, TheMainWindowHasItsKeysBackAfterAMenuOpenedFromAFloatingBar) {
    ToggleFloating();
    GiveFocus(Layers());
    EXPECT_EQ(QApplication::activeWindow(), FloatingFrame(LayerBar()));
    QTest::keyClick(&Layers(), Qt::Key_F, Qt::AltModifier);
    Press(OpenMenu(), Qt::Key_Escape);
    QApplication::setActiveWindow(&MainWindow());
    Press(*QApplication::focusWidget(), Qt::Key_Down);
    EXPECT_FALSE(QApplication::activePopupWidget());
}

TEST_F(BarsTest, TheMenuKeyInAListOpensTheBarsMenuWhichGoesWithItsWindow) {
    WantMenu(Layers(), {1, 1}, QContextMenuEvent::Keyboard);
    const QPointer<QMenu> menu = &OpenMenu();
    EXPECT_EQ(menu->actions()[0]->text(), "&Float Layers && Channels");
    Main().DestroyChildren();
    EXPECT_FALSE(menu);
}

TEST_F(BarsTest, ADragThatIsBrokenOffLeavesNoOutline) {
    for (const QEvent::Type end :
        {QEvent::WindowDeactivate, QEvent::WindowBlocked, QEvent::UngrabMouse, QEvent::Hide}) {
        BeginDrag();
        EXPECT_TRUE(Outline());
        QEvent event(end);
        QApplication::sendEvent(&LayerBar(), &event);
        EXPECT_FALSE(Outline()) << end;
        MouseRelease(LayerBar(), LayerBar().mapToGlobal(QPoint(50, 200)));
        EXPECT_FALSE(FloatingFrame(LayerBar())) << "nothing is dropped";
    }
    BeginDrag();
    Main().DestroyChildren();
    EXPECT_FALSE(Outline());
}

// As under a dialog, or while the frame is hidden.
TEST_F(BarsTest, AFloatingFrameIsLetGoWhereNobodyTellsOfIt) {
    ToggleFloating();
    QWidget& frame = *FloatingFrame(LayerBar());
    const QPoint caption = frame.mapToGlobal(CAPTION);
    MousePress(frame, caption);
    MouseMove(frame, caption + QPoint(50, 50));
    const QPoint place = frame.pos();
    MouseMove(frame, caption + QPoint(90, 90), Qt::NoButton);
    MouseMove(frame, caption + QPoint(120, 120), Qt::NoButton);
    EXPECT_EQ(frame.pos(), place);
}

TEST_F(BarsTest, ABarThatIsScrolledAwayFloatsOnTheScreenAndKeepsTheKeys) {
    const auto hasKeys = [&] { return Layers().hasFocus(); };
    Frame().MoveWindow({-3000, -3000, -2000, -2500});
    GiveFocus(Layers());
    ToggleFloating();
    QWidget* const frame = FloatingFrame(LayerBar());
    ASSERT_TRUE(frame);
    const auto isOnScreen = [&] { return frame->screen()->availableGeometry().contains(frame->geometry()); };
    EXPECT_TRUE(isOnScreen());
    EXPECT_TRUE(WaitFor(hasKeys));
    frame->move(-5000, 5000);  // as on a screen that is gone when the bar floats again
    ToggleFloating();
    EXPECT_TRUE(WaitFor(hasKeys));
    ToggleFloating();
    EXPECT_TRUE(isOnScreen());
    frame->move(-5000, 5000);
    for (int i = 0; i < 2; ++i) Command(ID_TOGGLE_LAYER_BAR);
    EXPECT_TRUE(isOnScreen()) << "shown again";
}

TEST_F(BarsTest, AListThatIsGivenTheKeysIsScrolledIntoSight) {
    SubWindow().move(0, 0);
    Fit(32);
    Settle();
    QWidget& view = *View().GetWidget();
    for (const Qt::ToolBarArea edge : {Qt::BottomToolBarArea, Qt::TopToolBarArea}) {
        Frame().GetBarHost()->addToolBar(edge, &LayerBar());
        for (const auto& [what, isScrolled, give] : Table<const char*, bool, std::function<void()>>{
                 {"its key", true, [&] { QTest::keyClick(&view, Qt::Key_L, Qt::AltModifier); }},
                 {"the next pane", true, [] { Command(ID_NEXT_PANE); }},
                 {"no key", false, [&] { Layers().setFocus(Qt::OtherFocusReason); }}}) {
            GiveFocus(view);
            ScrollTo(3000, 3000);
            give();
            ASSERT_TRUE(WaitFor([&] { return Layers().hasFocus(); })) << what;
            Settle();
            EXPECT_EQ(Layers().visibleRegion() == Layers().rect(), isScrolled) << what << edge;
        }
    }
}

TEST_F(BarsTest, AListWithoutRoomThatIsGivenTheKeysShowsInThePanel) {
    Main().DestroyChildren();
    Open(Picture(16, 16));
    Settle();
    QWidget& view = *View().GetWidget();
    GiveFocus(view);
    for (const auto& [key, list, leave, modifiers, scale] :
        Table<Qt::Key, QComboBox*, Qt::Key, Qt::KeyboardModifiers, float>{
            {Qt::Key_C, &Channels(), Qt::Key_Escape, {}, 1}, {Qt::Key_L, &Layers(), Qt::Key_F6, {}, 1},
            {Qt::Key_C, &Channels(), Qt::Key_Plus, Qt::ControlModifier, 2}}) {
        QTest::keyClick(&view, key, Qt::AltModifier);
        Settle();
        QWidget* const panel = QApplication::activePopupWidget();
        ASSERT_TRUE(panel && panel->isAncestorOf(list)) << key;
        EXPECT_TRUE(list->hasFocus());
        for (const auto& [other, otherList] :
            Table<Qt::Key, QComboBox*>{{Qt::Key_C, &Channels()}, {Qt::Key_L, &Layers()}}) {
            QTest::keyClick(panel->windowHandle(), other, Qt::AltModifier);
            EXPECT_TRUE(otherList->hasFocus()) << "from one to the other";
        }
        QTest::keyClick(panel->windowHandle(), leave, modifiers);
        EXPECT_FALSE(QApplication::activePopupWidget()) << leave;
        EXPECT_TRUE(view.hasFocus());
        EXPECT_EQ(View().m_fScale, scale) << "a key of the window";
    }
}

TEST_F(BarsTest, AListWhoseOwnChoiceTakesItsRoomShowsInThePanelAtTheNextKey) {
    PsdFields wide = {.rows = 50, .columns = 400, .samples = Bytes(50 * 400)};
    for (const char* const name : {"a", "b", "c"})
        wide.layers.push_back({.channels = {{.data = RawData({7})}}, .name = name});
    Open(Psd(wide), "wide.psd");
    SubWindow().resize(500, 300);
    GiveFocus(Layers());
    Press(Layers(), Qt::Key_Down);
    Settle();
    EXPECT_TRUE(Layers().visibleRegion().isEmpty());
    Press(Layers(), Qt::Key_Control);
    Settle();
    EXPECT_FALSE(QApplication::activePopupWidget()) << "no key of the list's";
    Press(Layers(), Qt::Key_Down);
    EXPECT_EQ(Layers().currentText(), "b");
    Settle();
    const QWidget* const panel = QApplication::activePopupWidget();
    ASSERT_TRUE(panel && panel->isAncestorOf(&Layers()));
    EXPECT_TRUE(Layers().hasFocus());
    Press(Layers(), Qt::Key_Down);
    EXPECT_EQ(Layers().currentText(), "c");
    Press(Layers(), Qt::Key_Escape);
    EXPECT_TRUE(View().GetWidget()->hasFocus());
}

TEST_F(BarsTest, AStatusTextWithoutRoomEndsInDotsAndShowsWholeInATip) {
    const std::string text = "Read tolerantly: " + std::string(100, 'n');
    QLabel& pane = *Main().GetControlBar(ID_VIEW_STATUS_BAR)->GetWidget()->findChild<QLabel*>();
    for (const auto& [width, isCut] : Table<int, bool>{{330, true}, {2000, false}}) {
        Main().MoveWindow({0, 0, width, 500});
        Settle();
        Main().SetMessageText(text);
        EXPECT_EQ(pane.text().toStdString(), text) << "for whoever reads it aloud";
        EXPECT_EQ(TipOf(pane, {5, 5}), isCut ? text : "");
        const QImage shown = pane.grab().toImage();
        const QString dotted = pane.fontMetrics().elidedText(pane.text(), Qt::ElideRight, pane.width());
        Main().SetMessageText(dotted.toStdString());
        EXPECT_EQ(pane.grab().toImage(), shown) << width;
    }
    Main().SetMessageText("");
}
