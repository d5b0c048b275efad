#include "window_case.h"

#include <QImage>
#include <QLabel>
#include <QMenuBar>
#include <QPaintEvent>
#include <QShortcut>
#include <QWheelEvent>

#include <algorithm>
#include <stdexcept>

int RunWindowTests(char** argv) {
    const PrivateHome home;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    char* words[] = {argv[0], nullptr};
    if (const auto status = theApp.Start(1, words)) return *status;
    if (!theApp.InitInstance()) return EXIT_FAILURE;
    const int status = RUN_ALL_TESTS();
    theApp.ExitInstance();
    return status;
}

void Settle() {
    QApplication::processEvents();
    theApp.OnIdle();
}

bool WaitFor(const std::function<bool()>& condition) {
    constexpr int DEADLINE = 60'000;  // milliseconds
    const auto holds = [&] {
        Settle();
        return condition();
    };
    return QTest::qWaitFor(holds, DEADLINE);
}

Bytes Picture(u32 nWidth, u32 nHeight) {
    std::vector<u32> values;
    for (u32 y = 0; y < nHeight; ++y)
        for (u32 x = 0; x < nWidth; ++x) values.push_back(ValueAt(x, y));
    return Form("ILBM",
        {Bmhd({.width = nWidth, .height = nHeight, .planes = 5}), GreyCmap(32, 8), Body(PlanesOf(values, nWidth, 5))});
}

u32 ShownColour(u32 x, u32 y) {
    const u32 shade = ValueAt(x, y) * 8;
    return 0xFF000000 | shade << 16 | shade << 8 | shade;
}

Bytes PaddedRows(u32 nHeight) {
    Bytes rows;
    for (u32 y = 0; y < nHeight; ++y) rows.insert(rows.end(), {0xFF, 0});
    return Form("ILBM", {Bmhd({.width = 8, .height = nHeight}), GreyCmap(2, 255),
                            Alph({.width = 8, .height = nHeight, .data = Bytes(nHeight, 0xFF)}), Body(rows)});
}

Bytes MipMaps() {
    return List("ILBM", {Picture(64, 24), Form("MIPM", {Chunk("CONT", {3, 0})}), List("ILBM", {Picture(32, 12)}),
                            List("ILBM", {Picture(16, 6)})});
}

Texts Titles() {
    Texts titles;
    for (const auto& child : Main().GetChildren()) titles.push_back(child->GetWindowText());
    return titles;
}

void ScrollTo(int x, int y) {
    Area().horizontalScrollBar()->setValue(x);
    Area().verticalScrollBar()->setValue(y);
}

Texts Entries(const QComboBox& list) {
    Texts entries;
    for (int i = 0; i < list.count(); ++i) entries.push_back(list.itemText(i).toStdString());
    return entries;
}

void AddEntry(CComboBox& list, const std::string& strName) {
    SendMessageA(&list, CB_ADDSTRING, 0, reinterpret_cast<i64>(strName.c_str()));
}

std::string PaneText(const CWnd& bar) { return bar.GetWidget()->findChild<QLabel*>()->text().toStdString(); }

std::string MainPane() {
    Settle();
    return PaneText(*Main().GetControlBar(ID_VIEW_STATUS_BAR));
}

std::vector<u32> PixelsOf(QWidget& widget, const CRect& rect) {
    const QRect part(rect.left, rect.top, rect.Width(), rect.Height());
    const QImage image = widget.grab(part).toImage().convertToFormat(QImage::Format_RGB32);
    std::vector<u32> pixels;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) pixels.push_back(image.pixel(x, y));
    return pixels;
}

int AreaOf(const QRegion& region) {
    int area = 0;
    for (const QRect& rect : region) area += rect.width() * rect.height();
    return area;
}

bool PaintCounter::eventFilter(QObject*, QEvent* pEvent) {
    if (pEvent->type() == QEvent::Paint) {
        ++m_nPaints;
        m_nPixels += AreaOf(static_cast<QPaintEvent*>(pEvent)->region());
    }
    return false;
}

void PressKeys(const char* pszKeys) {
    const auto all = Main().GetWidget()->findChildren<QShortcut*>();
    const auto found = std::ranges::find(all, QKeySequence(QString::fromLatin1(pszKeys)), &QShortcut::key);
    if (found == all.end()) throw std::runtime_error(std::string("no such keys: ") + pszKeys);
    emit(*found)->activated();
    Settle();
}

void GiveFocus(QWidget& widget) {
    // Again and again: a window that an earlier test closed may only now hand its activation on.
    EXPECT_TRUE(WaitFor([&] {
        QApplication::setActiveWindow(widget.window());
        widget.setFocus();
        return widget.hasFocus();
    }));
}

void SendMouse(
    QWidget& widget, QEvent::Type type, const QPointF& onScreen, Qt::MouseButton button, Qt::MouseButtons held) {
    QMouseEvent event(type, widget.mapFromGlobal(onScreen), onScreen, button, held, Qt::NoModifier);
    QApplication::sendEvent(&widget, &event);
}

void MousePress(QWidget& widget, const QPointF& onScreen, Qt::MouseButton button) {
    SendMouse(widget, QEvent::MouseButtonPress, onScreen, button, button);
}

void MouseMove(QWidget& widget, const QPointF& onScreen, Qt::MouseButtons held) {
    SendMouse(widget, QEvent::MouseMove, onScreen, Qt::NoButton, held);
}

void MouseRelease(QWidget& widget, const QPointF& onScreen) {
    SendMouse(widget, QEvent::MouseButtonRelease, onScreen, Qt::LeftButton, Qt::NoButton);
}

void DoubleClick(QWidget& widget, const QPoint& place) {
    SendMouse(widget, QEvent::MouseButtonDblClick, widget.mapToGlobal(place), Qt::LeftButton, Qt::LeftButton);
}

bool TurnWheel(QWidget& widget, const QPointF& place, int nTurn, Qt::KeyboardModifiers keys) {
    QWheelEvent turn(
        place, widget.mapToGlobal(place), {}, {0, nTurn}, Qt::NoButton, keys, Qt::NoScrollPhase, /*inverted=*/false);
    QApplication::sendEvent(&widget, &turn);
    return turn.isAccepted();
}

QAction* ItemOf(const QMenu& menu, u32 nID) {
    for (QAction* const item : menu.actions())
        if (!item->isSeparator() && item->data().toUInt() == nID) return item;
    return nullptr;
}

QAction* MenuItem(u32 nID) {
    for (const QAction* const title : Main().GetBarHost()->menuBar()->actions()) {
        emit title->menu()->aboutToShow();
        if (QAction* const item = ItemOf(*title->menu(), nID)) return item;
    }
    return nullptr;
}

QMenu& OpenMenu() {
    auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (!menu) throw std::runtime_error("no menu is open");
    return *menu;
}

void WantMenu(QWidget& widget, const QPoint& place, QContextMenuEvent::Reason reason) {
    QContextMenuEvent event(reason, place, widget.mapToGlobal(place));
    QApplication::sendEvent(&widget, &event);
}

QMenu& OpenMenuOf(const CView& view, QContextMenuEvent::Reason reason) {
    QWidget& widget = *view.GetWidget();
    // The toolkit gives the key the middle of the view.
    WantMenu(widget, reason == QContextMenuEvent::Mouse ? QPoint(1, 1) : widget.rect().center(), reason);
    return OpenMenu();
}

WindowTest::~WindowTest() {
    WatchedView::s_onUpdate = nullptr;
    Main().DestroyChildren();
    Settle();
    EXPECT_EQ(Told(), Texts()) << "the user was told what the test does not expect";
    EXPECT_EQ(Asked(), Texts()) << "the user was asked what the test does not expect";
}

CDocument& WindowTest::Open(const Bytes& bytes, const std::string& strName) {
    CDocument* const document = theApp.OpenDocumentFile(m_folder.Write(bytes, strName));
    if (!document) throw std::runtime_error(strName + " does not open");
    return *document;
}

std::string WindowTest::ToldOnce() {
    const Texts told = Told();
    EXPECT_EQ(told.size(), 1u) << testing::PrintToString(told);
    return told.empty() ? "" : told[0];
}

bool WindowTest::WaitUntilTold() {
    return WaitFor([&] { return !m_answers.m_messages.empty(); });
}

bool WindowTest::WaitForTitle(const std::string& strRest) {
    return WaitFor([&] { return Main().GetWindowText() == "Talvorine Graphics File Viewer" + strRest; });
}

bool WindowTest::WaitForPane(const std::string& strText) {
    return WaitFor([&] { return PaneText(Frame().m_wndInfoBar) == strText; });
}

CSize WindowTest::ClientSize() {
    const CRect client = View().GetClientRect();
    return {client.Width(), client.Height()};
}
