#include "framework/qt/wnd/wnd.h"

#include "framework/qt/kit/convert.h"

#include <QApplication>
#include <QWidget>

namespace {

QRect ToQt(const CRect& rect) {
    return {rect.left, rect.top, rect.Width(), rect.Height()};
}

// What the toolkit takes for the place of its mark for changed documents, and how it is made to show it.
const QString TITLE_MARK = QStringLiteral("[*]");
const QString TITLE_MARK_SHOWN = QStringLiteral("[*][*]");

CWnd* g_pMainWnd = nullptr;

}  // namespace

CWnd::~CWnd() {
    delete m_pWidget;
}

void CWnd::Attach(QWidget* pWidget, CWnd* pParent) {
    m_pWidget = pWidget;
    m_pParent = pParent;
    QObject::connect(pWidget, &QObject::destroyed, [this] { m_pWidget = nullptr; });
}

CRect CWnd::GetWindowRect() const {
    const QRect frame = m_pWidget->isWindow()
                            ? m_pWidget->frameGeometry()
                            : QRect(m_pWidget->mapToGlobal(QPoint(0, 0)), m_pWidget->size());
    return {frame.left(), frame.top(), frame.left() + frame.width(), frame.top() + frame.height()};
}

CRect CWnd::GetClientRect() const {
    return {0, 0, GetClientWidget()->width(), GetClientWidget()->height()};
}

void CWnd::ScreenToClient(CRect* pRect) const {
    const QPoint corner = GetClientWidget()->mapFromGlobal(QPoint(pRect->left, pRect->top));
    *pRect = {corner.x(), corner.y(), corner.x() + pRect->Width(), corner.y() + pRect->Height()};
}

void CWnd::MoveWindow(const CRect& rect) {
    m_pWidget->setGeometry(ToQt(rect));
}

bool CWnd::IsWindowVisible() const {
    return m_pWidget && m_pWidget->isVisible();
}

void CWnd::ShowWindow(bool bShow) {
    m_pWidget->setVisible(bShow);
}

void CWnd::SetWindowText(const std::string& strText) {
    m_pWidget->setWindowTitle(ToDisplayText(strText).replace(TITLE_MARK, TITLE_MARK_SHOWN));
    m_pWidget->setAccessibleName(ToDisplayText(strText));
}

std::string CWnd::GetWindowText() const {
    return m_pWidget->windowTitle().replace(TITLE_MARK_SHOWN, TITLE_MARK).toStdString();
}

void CWnd::Invalidate() {
    m_pWidget->update();
}

i64 CWnd::WindowProc(u32 nMessage, u64, i64) {
    if (nMessage == WM_CLOSE) m_pWidget->close();
    return 0;
}

i64 SendMessageA(HWND hWnd, u32 nMessage, u64 wParam, i64 lParam) {
    return hWnd->WindowProc(nMessage, wParam, lParam);
}

CWnd* AfxGetMainWnd() {
    return g_pMainWnd;
}

void AfxSetMainWnd(CWnd* pWnd) {
    g_pMainWnd = pWnd;
}

CWaitCursor::CWaitCursor() {
    QApplication::setOverrideCursor(Qt::WaitCursor);
}

CWaitCursor::~CWaitCursor() {
    QApplication::restoreOverrideCursor();
}
