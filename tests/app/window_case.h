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
#include <QMainWindow>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QScrollBar>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <utility>

extern CVistrelApp theApp;

using Texts = std::vector<std::string>;

// The program

// From its start to its end, with all tests between them.
int RunWindowTests(char** argv);

// Lets it run until nothing is left to be done.
void Settle();

// Lets it run until the condition holds. The deadline only ends a test that would never end.
bool WaitFor(const std::function<bool()>& condition);

// Once it runs again, as under a dialog that waits for its user.
inline void Later(const std::function<void()>& call) { QMetaObject::invokeMethod(qApp, call, Qt::QueuedConnection); }

inline CMDIFrameWnd& Main() { return *theApp.m_pMainWnd; }

// False where nobody carries it out.
inline bool Command(u32 nID) { return Main().OnCmdMsg(nID, CN_COMMAND, nullptr); }

// Pictures

// Value of a pixel of Picture; no two neighbours are the same.
inline u32 ValueAt(u32 x, u32 y) { return (x * 7 + y * 11) % 32; }

// 32 shades of grey, all neighbours different.
Bytes Picture(u32 nWidth, u32 nHeight);

u32 ShownColour(u32 x, u32 y);

// A form that opens and has nothing to show.
inline Bytes NoPicture() { return Form("ILBM", {Bmhd({.width = 8, .height = 8})}); }

// White rows of eight pixels, each padded with a byte that shows as black where rows are not taken for padded; and
// an alpha.
Bytes PaddedRows(u32 nHeight = 2);

// A picture of 64 by 24 pixels with two levels, and a third one that is counted but not there.
Bytes MipMaps();

// Child windows

inline std::size_t OpenWindows() { return Main().GetChildren().size(); }

// In the order in which they were opened.
inline CChildFrame& FrameAt(std::size_t nPlace) { return static_cast<CChildFrame&>(*Main().GetChildren().at(nPlace)); }

inline CVistrelView& ViewOf(const CMDIChildWnd& frame) { return static_cast<CVistrelView&>(*frame.GetActiveView()); }

Texts Titles();

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
void ScrollTo(int x, int y);

// What shows

inline QComboBox& ListOf(const CComboBox& list) { return dynamic_cast<QComboBox&>(*list.GetWidget()); }

Texts Entries(const QComboBox& list);

void AddEntry(CComboBox& list, const std::string& strName);

// Of a bar's first pane, as it shows.
std::string PaneText(const CWnd& bar);

// What the main window's message pane says.
std::string MainPane();

// Row by row, one 0xFFRRGGBB word for each pixel that the widget shows in a part of it.
std::vector<u32> PixelsOf(QWidget& widget, const CRect& rect);

int AreaOf(const QRegion& region);

// Counts what a widget is asked to paint.
class PaintCounter final : public QObject {
  public:
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }

    int m_nPaints = 0;
    int m_nPixels = 0;

  protected:
    bool eventFilter(QObject*, QEvent* pEvent) override;
};

// Keys, the pointer and the wheel

// As the user's key in the widget.
inline void Press(QWidget& widget, Qt::Key key) { QTest::keyClick(&widget, key); }

// As the main window's keys, wherever the focus is.
void PressKeys(const char* pszKeys);

void GiveFocus(QWidget& widget);

// Held: the buttons that are down after it.
void SendMouse(
    QWidget& widget, QEvent::Type type, const QPointF& onScreen, Qt::MouseButton button, Qt::MouseButtons held);
void MousePress(QWidget& widget, const QPointF& onScreen, Qt::MouseButton button = Qt::LeftButton);
void MouseMove(QWidget& widget, const QPointF& onScreen, Qt::MouseButtons held = Qt::LeftButton);
void MouseRelease(QWidget& widget, const QPointF& onScreen);
void DoubleClick(QWidget& widget, const QPoint& place);

constexpr int NOTCH = 120;  // of the wheel, in eighths of a degree

// Away from the user where nTurn is positive. False where the widget leaves it to what lies below.
bool TurnWheel(QWidget& widget, const QPointF& place, int nTurn, Qt::KeyboardModifiers keys = Qt::NoModifier);

// Menus

// None where the menu has no item of this command.
QAction* ItemOf(const QMenu& menu, u32 nID);

// The item of a command as the main window's menus show it now; none where no menu has it.
QAction* MenuItem(u32 nID);

// The one that is open now.
QMenu& OpenMenu();

// As a click with the right button, or the key for it, asks for a menu.
void WantMenu(QWidget& widget, const QPoint& place, QContextMenuEvent::Reason reason);

QMenu& OpenMenuOf(const CView& view, QContextMenuEvent::Reason reason);

// What the user is told and asked in a test, the test takes with Told and Asked; what is left at its end fails it.
class WindowTest : public testing::Test {
  protected:
    WindowTest() { Main().MoveWindow({0, 0, 1000, 700}); }
    ~WindowTest() override;

    // Throws where it does not open.
    CDocument& Open(const Bytes& bytes, const std::string& strName = "picture.iff");

    Texts Told() { return std::exchange(m_answers.m_messages, {}); }
    Texts Asked() { return std::exchange(m_answers.m_questions, {}); }

    // The one message.
    std::string ToldOnce();
    bool WaitUntilTold();

    // After the program's name in the main window's title.
    static bool WaitForTitle(const std::string& strRest);
    static bool WaitForPane(const std::string& strText);

    // Of the window that was opened last:

    static CChildFrame& Frame() { return FrameAt(OpenWindows() - 1); }
    static CVistrelView& View() { return ViewOf(Frame()); }
    static QMdiSubWindow& SubWindow() { return *Frame().GetSubWindow(); }
    static QComboBox& Layers() { return ListOf(Frame().m_wndLayerCombo); }
    static QComboBox& Channels() { return ListOf(Frame().m_wndChannelCombo); }
    static void Fit(float fScale) { View().FitFrameToImage(fScale); }

    static CSize ClientSize();
    static std::vector<u32> ShownPixels(const CRect& rect) { return PixelsOf(*View().GetWidget(), rect); }
    static u32 ShownPixel(int x, int y) { return ShownPixels({x, y, x + 1, y + 1})[0]; }

    RecordedAnswers m_answers;
    TempFolder m_folder;
};

inline void PrintTo(const CSize& size, std::ostream* pOut) { *pOut << size.cx << " x " << size.cy; }
