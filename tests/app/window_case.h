// The program's windows without a screen, what can be done to them, and what can be asked of them.
#pragma once

#include "app/child_frame.h"
#include "app/resource_ids.h"
#include "app/vistrel_app.h"
#include "app/vistrel_view.h"
#include "document/vistrel_doc.h"
#include "framework/core/resource.h"
#include "support/has.h"
#include "support/iff_builder.h"
#include "support/private_home.h"
#include "support/psd_builder.h"
#include "support/recorded_answers.h"
#include "support/table.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QImage>
#include <QLabel>
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QScrollBar>
#include <QShortcut>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <utility>

extern CVistrelApp theApp;

using Texts = std::vector<std::string>;

// The program

// From its start to its end, with all tests between them.
inline int RunWindowTests(char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char* words[] = {argv[0], nullptr};
    if (const auto status = theApp.Start(1, words)) return *status;
    if (!theApp.InitInstance()) return EXIT_FAILURE;
    const int status = RUN_ALL_TESTS();
    theApp.ExitInstance();
    return status;
}

// Lets it run until nothing is left to be done.
inline void Settle() {
    QApplication::processEvents();
    theApp.OnIdle();
}

// Lets it run until the condition holds. The deadline only ends a test that would never end.
inline bool WaitFor(const std::function<bool()>& condition) {
    constexpr int DEADLINE = 60'000;  // milliseconds
    const auto holds = [&] {
        Settle();
        return condition();
    };
    return QTest::qWaitFor(holds, DEADLINE);
}

// Once it runs again, as under a dialog that waits for its user.
inline void Later(const std::function<void()>& call) { QMetaObject::invokeMethod(qApp, call, Qt::QueuedConnection); }

inline CMDIFrameWnd& Main() { return *theApp.m_pMainWnd; }

// False where nobody carries it out.
inline bool Command(u32 nID) { return Main().OnCmdMsg(nID, CN_COMMAND, nullptr); }

// Pictures

// Value of a pixel of Picture; no two neighbours are the same.
inline u32 ValueAt(u32 x, u32 y) { return (x * 7 + y * 11) % 32; }

// 32 shades of grey, all neighbours different.
inline Bytes Picture(u32 nWidth, u32 nHeight) {
    std::vector<u32> values;
    for (u32 y = 0; y < nHeight; ++y)
        for (u32 x = 0; x < nWidth; ++x) values.push_back(ValueAt(x, y));
    return Form("ILBM",
        {Bmhd({.width = nWidth, .height = nHeight, .planes = 5}), GreyCmap(32, 8), Body(PlanesOf(values, nWidth, 5))});
}

inline u32 ShownColour(u32 x, u32 y) {
    const u32 shade = ValueAt(x, y) * 8;
    return 0xFF000000 | shade << 16 | shade << 8 | shade;
}

// A form that opens and has nothing to show.
inline Bytes NoPicture() { return Form("ILBM", {Bmhd({.width = 8, .height = 8})}); }

// White rows of eight pixels, each padded with a byte that shows as black where rows are not taken for padded; and
// an alpha.
inline Bytes PaddedRows(u32 nHeight = 2) {
    Bytes rows;
    for (u32 y = 0; y < nHeight; ++y) rows.insert(rows.end(), {0xFF, 0});
    return Form("ILBM", {Bmhd({.width = 8, .height = nHeight}), GreyCmap(2, 255),
                            Alph({.width = 8, .height = nHeight, .data = Bytes(nHeight, 0xFF)}), Body(rows)});
}

// A picture of 64 by 24 pixels with two levels, and a third one that is counted but not there.
inline Bytes MipMaps() {
    return List("ILBM", {Picture(64, 24), Form("MIPM", {Chunk("CONT", {3, 0})}), List("ILBM", {Picture(32, 12)}),
                            List("ILBM", {Picture(16, 6)})});
}

// Child windows

inline std::size_t OpenWindows() { return Main().GetChildren().size(); }

// In the order in which they were opened.
inline CChildFrame& FrameAt(std::size_t nPlace) { return static_cast<CChildFrame&>(*Main().GetChildren().at(nPlace)); }

inline CVistrelView& ViewOf(const CMDIChildWnd& frame) { return static_cast<CVistrelView&>(*frame.GetActiveView()); }

inline Texts Titles() {
    Texts titles;
    for (const auto& child : Main().GetChildren()) titles.push_back(child->GetWindowText());
    return titles;
}

// A view whose tests see each picture that it makes.
struct WatchedView final : public CVistrelView {
    void OnUpdate(CView* pSender, i64 lHint, CCmdTarget* pHint) override {
        CVistrelView::OnUpdate(pSender, lHint, pHint);
        if (s_onUpdate) s_onUpdate(*this);
    }

    static inline std::function<void(WatchedView&)> s_onUpdate;  // none between tests
};

// Shows a file in a view of that class. False where it does not open.
template <typename View>
bool OpenWith(const std::string& strPath) {
    static const CMultiDocTemplate documents(
        IDR_IFF_TYPE, RuntimeClassOf<CVistrelDoc>(), RuntimeClassOf<CChildFrame>(), RuntimeClassOf<View>());
    const auto document = documents.ReadDocumentFile(strPath, [](CDocument&) {});
    return document && documents.ShowDocument(Main(), document);
}

// The area in which they stand; by how much it is scrolled.
inline QMdiArea& Area() { return *Main().GetMDIClient()->GetArea(); }
inline QPoint Scrolled() { return {Area().horizontalScrollBar()->value(), Area().verticalScrollBar()->value()}; }
inline void ScrollTo(int x, int y) {
    Area().horizontalScrollBar()->setValue(x);
    Area().verticalScrollBar()->setValue(y);
}

// What shows

inline QComboBox& ListOf(const CComboBox& list) { return dynamic_cast<QComboBox&>(*list.GetWidget()); }

inline Texts Entries(const QComboBox& list) {
    Texts entries;
    for (int i = 0; i < list.count(); ++i) entries.push_back(list.itemText(i).toStdString());
    return entries;
}

inline void AddEntry(CComboBox& list, const std::string& strName) {
    SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(strName.c_str()));
}

// Of a bar's first pane, as it shows.
inline std::string PaneText(const CWnd& bar) { return bar.GetWidget()->findChild<QLabel*>()->text().toStdString(); }

// What the main window's message pane says.
inline std::string MainPane() {
    Settle();
    return PaneText(*Main().GetControlBar(ID_VIEW_STATUS_BAR));
}

// Row by row, one 0xFFRRGGBB word for each pixel that the widget shows in a part of it.
inline std::vector<u32> PixelsOf(QWidget& widget, const CRect& rect) {
    const QRect part(rect.left, rect.top, rect.Width(), rect.Height());
    const QImage image = widget.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    std::vector<u32> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) pixels.push_back(image.pixel(x, y));
    return pixels;
}

inline int AreaOf(const QRegion& region) {
    int area = 0;
    for (const QRect& rect : region) area += rect.width() * rect.height();
    return area;
}

// Counts what a widget is asked to paint.
class PaintCounter final : public QObject {
  public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    int m_nPaints = 0;
    int m_nPixels = 0;

  protected:
    bool eventFilter(QObject*, QEvent* pEvent) override {
        if (pEvent->type() == QEvent::Paint) {
            ++m_nPaints;
            m_nPixels += AreaOf(static_cast<QPaintEvent*>(pEvent)->region());
        }
        return false;
    }
};

// Keys, the pointer and the wheel

// As the user's key in the widget.
inline void Press(QWidget& widget, Qt::Key key) { QTest::keyClick(&widget, key); }

// As the main window's keys, wherever the focus is.
inline void PressKeys(const char* pszKeys) {
    const auto all = Main().GetWidget()->findChildren<QShortcut*>();
    const auto found = std::ranges::find(all, QKeySequence(QString::fromLatin1(pszKeys)), &QShortcut::key);
    if (found == all.end()) throw std::runtime_error(std::string("no such keys: ") + pszKeys);
    emit(*found)->activated();
    Settle();
}

inline void GiveFocus(QWidget& widget) {
    QApplication::setActiveWindow(widget.window());
    widget.setFocus();
    EXPECT_TRUE(WaitFor([&] { return widget.hasFocus(); }));
}

// Held: the buttons that are down after it.
inline void SendMouse(
    QWidget& widget, QEvent::Type type, const QPointF& onScreen, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, widget.mapFromGlobal(onScreen), onScreen, button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}
inline void MousePress(QWidget& widget, const QPointF& onScreen, Qt::MouseButton button = Qt::LeftButton) {
    SendMouse(widget, QEvent::MouseButtonPress, onScreen, button, button);
}
inline void MouseMove(QWidget& widget, const QPointF& onScreen, Qt::MouseButtons held = Qt::LeftButton) {
    SendMouse(widget, QEvent::MouseMove, onScreen, Qt::NoButton, held);
}
inline void MouseRelease(QWidget& widget, const QPointF& onScreen) {
    SendMouse(widget, QEvent::MouseButtonRelease, onScreen, Qt::LeftButton, Qt::NoButton);
}
inline void DoubleClick(QWidget& widget, const QPoint& place) {
    SendMouse(widget, QEvent::MouseButtonDblClick, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton);
}

constexpr int NOTCH = 120;  // of the wheel, in eighths of a degree

// Away from the user where nTurn is positive. False where the widget leaves it to what lies below.
inline bool TurnWheel(QWidget& widget, const QPointF& place, int nTurn, Qt::KeyboardModifiers keys = Qt::NoModifier) {
    QWheelEvent turn(
        place, widget.mapToGlobal(place), {}, {0, nTurn}, Qt::NoButton, keys, Qt::NoScrollPhase, /*inverted=*/false);
    QApplication::sendEvent(&widget, &turn);
    return turn.isAccepted();
}

// Menus

// None where the menu has no item of this command.
inline QAction* ItemOf(const QMenu& menu, u32 nID) {
    for (QAction* const item : menu.actions())
        if (!item->isSeparator() && item->data().toUInt() == nID) return item;
    return nullptr;
}

// The item of a command as the main window's menus show it now; none where no menu has it.
inline QAction* MenuItem(u32 nID) {
    for (const QAction* const title : Main().GetBarHost()->menuBar()->actions()) {
        emit title->menu()->aboutToShow();
        if (QAction* const item = ItemOf(*title->menu(), nID)) return item;
    }
    return nullptr;
}

// The one that is open now.
inline QMenu& OpenMenu() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) throw std::runtime_error("no menu is open");
    return *menu;
}

// As a click with the right button, or the key for it, asks for a menu.
inline void WantMenu(QWidget& widget, const QPoint& place, QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
}

inline QMenu& OpenMenuOf(const CView& view, QContextMenuEvent::Reason reason) {
    QWidget& widget = *view.GetWidget();
    // The toolkit gives the key the middle of the view.
    WantMenu(widget, reason == QContextMenuEvent::Mouse ? QPoint(1, 1) : widget.rect().center(), reason);
    return OpenMenu();
}

// What the user is told and asked in a test, the test takes with Told and Asked; what is left at its end fails it.
class WindowTest : public testing::Test {
  protected:
    WindowTest() { Main().MoveWindow({0, 0, 1000, 700}); }
    ~WindowTest() override {
        WatchedView::s_onUpdate = nullptr;
        Main().DestroyChildren();
        EXPECT_EQ(Told(), Texts()) << "the user was told what the test does not expect";
        EXPECT_EQ(Asked(), Texts()) << "the user was asked what the test does not expect";
    }

    // Throws where it does not open.
    CDocument& Open(const Bytes& bytes, const std::string& strName = "picture.iff") {
        CDocument* const document = theApp.OpenDocumentFile(m_folder.Write(bytes, strName));
        if (!document) throw std::runtime_error(strName + " does not open");
        return *document;
    }

    Texts Told() { return std::exchange(m_answers.m_messages, {}); }
    Texts Asked() { return std::exchange(m_answers.m_questions, {}); }

    // The one message.
    std::string ToldOnce() {
        const Texts told = Told();
        EXPECT_EQ(told.size(), 1u) << testing::PrintToString(told);
        return told.empty() ? "" : told[0];
    }
    bool WaitUntilTold() {
        return WaitFor([&] { return !m_answers.m_messages.empty(); });
    }

    // After the program's name in the main window's title.
    static bool WaitForTitle(const std::string& strRest) {
        return WaitFor([&] { return Main().GetWindowText() == "Talvorine Graphics File Viewer" + strRest; });
    }
    static bool WaitForPane(const std::string& strText) {
        return WaitFor([&] { return PaneText(Frame().m_wndInfoBar) == strText; });
    }

    // Of the window that was opened last:

    static CChildFrame& Frame() { return FrameAt(OpenWindows() - 1); }
    static CVistrelView& View() { return ViewOf(Frame()); }
    static QMdiSubWindow& SubWindow() { return *Frame().GetSubWindow(); }
    static QComboBox& Layers() { return ListOf(Frame().m_wndLayerCombo); }
    static QComboBox& Channels() { return ListOf(Frame().m_wndChannelCombo); }
    static void Fit(float fScale) { View().FitFrameToImage(fScale); }

    static CSize ClientSize() {
        const CRect client = View().GetClientRect();
        return {client.Width(), client.Height()};
    }
    static std::vector<u32> ShownPixels(const CRect& rect) { return PixelsOf(*View().GetWidget(), rect); }
    static u32 ShownPixel(int x, int y) { return ShownPixels({x, y, x + 1, y + 1})[0]; }

    RecordedAnswers m_answers;
    TempFolder m_folder;
};

inline void PrintTo(const CSize& size, std::ostream* pOut) { *pOut << size.cx << " x " << size.cy; }
