#include "framework/qt/wnd/view.h"

#include "framework/core/document.h"
#include "framework/qt/program/win_app.h"
#include "framework/qt/wnd/dc.h"
#include "framework/qt/wnd/mdi_frame_wnd.h"
#include "framework/qt/wnd/printing.h"

#include <QPaintEvent>
#include <QPainter>
#include <QWidget>

#include <exception>

namespace {

class ViewWidget final : public QWidget {
  public:
    explicit ViewWidget(CView& view) : m_view(view) {
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
        setFocusPolicy(Qt::StrongFocus);
    }

  protected:
    void paintEvent(QPaintEvent* pEvent) override {
        const QRect exposed = pEvent->rect();
        QPainter painter(this);
        CDC dc(&painter, {exposed.left(), exposed.top(), exposed.left() + exposed.width(),
                          exposed.top() + exposed.height()});
        m_view.Paint(dc);
    }

  private:
    CView& m_view;
};

}  // namespace

CView::~CView() {
    if (m_pDocument) m_pDocument->RemoveView(this);
}

void CView::Create(CFrameWnd& frame, CDocument& document) {
    Attach(new ViewWidget(*this), &frame);
    document.AddView(this);
    m_pDocument = &document;
}

CRect CView::GetClientRect() const {
    const CSize size = static_cast<CMDIChildWnd*>(GetParent())->GetViewSize();
    return {0, 0, size.cx, size.cy};
}

void CView::OnInitialUpdate() {
    OnUpdate(nullptr, 0, nullptr);
}

void CView::OnUpdate(CView*, i64, CCmdTarget*) {
    m_bDrawFailed = false;
    Invalidate();
}

// A box may not be opened from inside a paint event, and the next one would only fail again.
void CView::Paint(CDC& dc) {
    if (m_bDrawFailed) return;
    try {
        OnDraw(&dc);
    } catch (...) {
        m_bDrawFailed = true;
        AfxReportLater(std::current_exception());
    }
}

bool CView::OnPreparePrinting(CPrintInfo*) {
    return true;
}

bool CView::DoPreparePrinting(CPrintInfo* pInfo) {
    return AfxPreparePrinting(*pInfo);
}

bool CView::Print(bool bDirect) {
    CPrintInfo info = {&AfxGetPrinter(), bDirect};
    if (!OnPreparePrinting(&info)) return false;
    AfxPrintView(*this, info);
    return true;
}

void CView::OnFilePrint() {
    Print(false);
}

void CView::OnFilePrintDirect() {
    Print(true);
}

void CView::OnFilePrintPreview() {
    AfxPreviewView(*this);
}

bool CView::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    return CWnd::OnCmdMsg(nID, nCode, pUi) || m_pDocument->OnCmdMsg(nID, nCode, pUi);
}

bool CView::HasHandler(u32 nID, u32 nCode) const {
    return CWnd::HasHandler(nID, nCode) || m_pDocument->HasHandler(nID, nCode);
}
