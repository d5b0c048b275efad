#include "framework/qt/wnd/view.h"

#include "framework/core/document.h"
#include "framework/core/guarded_call.h"
#include "framework/qt/kit/report_later.h"
#include "framework/qt/wnd/dc.h"
#include "framework/qt/wnd/hold_drag.h"
#include "framework/qt/wnd/menu_bar.h"
#include "framework/qt/wnd/view_place.h"

#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPointer>
#include <QWheelEvent>
#include <QWidget>

#include <cmath>
#include <exception>

namespace {

// Where the pointer was last seen over a view. What has moved under it since then, as windows do that scroll,
// has told nobody of it.
struct SeenPointer {
    QPointer<QWidget> window;  // none where it has left the view
    QPointF place;             // in it
};

SeenPointer g_pointer;

void SeePointer(const QWidget& view, const QPointF& place) {
    QWidget* const window = view.window();
    g_pointer = {window, view.mapTo(window, place)};
}

// The pixel of a widget that shows what is at a place in its window. A pixel of the screen shows what lies
// just before its middle, and there can be several of them, or parts, to one of the widget's.
QPoint PixelAt(const QWidget& widget, const QPointF& place) {
    constexpr double LITTLE = 1.0 / 256;  // of a pixel of the screen; the place is less inaccurate
    const double ratio = widget.devicePixelRatioF();
    const auto shown = [&](double fPlace) {
        return (std::floor(fPlace * ratio + LITTLE) + 0.5 - LITTLE) / ratio;
    };
    const QPointF middle(shown(place.x()), shown(place.y()));
    const QPointF inside = widget.mapFrom(widget.window(), middle);
    return {static_cast<int>(std::floor(inside.x())), static_cast<int>(std::floor(inside.y()))};
}

class ViewWidget final : public QWidget {
  public:
    ViewWidget(CView& view, CViewPlace& place) : m_view(view), m_drag(*this, place) {
        setBackgroundRole(QPalette::Base);
        setAutoFillBackground(true);
        setFocusPolicy(Qt::StrongFocus);
        setMouseTracking(true);
    }

    const CView& GetView() const { return m_view; }

  protected:
    void paintEvent(QPaintEvent* pEvent) override {
        QPainter painter(this);
        // What is exposed can be much less than the rectangle around it. Parts that begin within a pixel of
        // the screen would leave gaps between them.
        if (!AfxHasWholePixels(*this)) return Paint(painter, pEvent->rect());
        for (const QRect& exposed : pEvent->region()) Paint(painter, exposed);
    }

    void contextMenuEvent(QContextMenuEvent* pEvent) override {
        const MenuResource* const menu = AfxFindMenu(m_view.GetContextMenu());
        if (!menu) return;
        // The key means the middle of the view, which can be far beyond what there is to see of it.
        const QRect visible = visibleRegion().boundingRect();
        const bool isKey = pEvent->reason() == QContextMenuEvent::Keyboard && !visible.isEmpty();
        const QPoint place = isKey ? mapToGlobal(visible.center()) : pEvent->globalPos();
        AfxTrackPopupMenu(*this, *menu, place, *m_view.GetParent());
    }

    void enterEvent(QEnterEvent* pEvent) override {
        SeePointer(*this, pEvent->position());
        QWidget::enterEvent(pEvent);
    }

    void leaveEvent(QEvent* pEvent) override {
        g_pointer = {};
        QWidget::leaveEvent(pEvent);
    }

    // What was held is elsewhere at another size.
    void resizeEvent(QResizeEvent* pEvent) override {
        m_drag.End();
        QWidget::resizeEvent(pEvent);
    }

    void mousePressEvent(QMouseEvent* pEvent) override {
        m_drag.OnPress(*pEvent);
        if (!m_drag.IsHeld()) QWidget::mousePressEvent(pEvent);
    }

    void mouseMoveEvent(QMouseEvent* pEvent) override {
        SeePointer(*this, pEvent->position());
        m_drag.OnMove(*pEvent);
        if (!m_drag.IsHeld()) QWidget::mouseMoveEvent(pEvent);
    }

    void mouseReleaseEvent(QMouseEvent* pEvent) override {
        m_drag.OnRelease(*pEvent);
        QWidget::mouseReleaseEvent(pEvent);
    }

    // Fine wheels send parts of a notch. Without the Control key the wheel is the area's.
    void wheelEvent(QWheelEvent* pEvent) override {
        if (!(pEvent->modifiers() & Qt::ControlModifier)) {
            m_nWheel = 0;
            return QWidget::wheelEvent(pEvent);
        }
        const int turned = pEvent->angleDelta().y();
        const bool turnsBack = (m_nWheel < 0) != (turned < 0);
        m_nWheel = turnsBack ? turned : m_nWheel + turned;
        const int notches = m_nWheel / QWheelEvent::DefaultDeltasPerStep;
        m_nWheel %= QWheelEvent::DefaultDeltasPerStep;
        pEvent->accept();
        if (notches == 0) return;
        const QPoint place = PixelAt(*this, mapTo(window(), pEvent->position()));
        AfxGuardedCall([&] { m_view.OnControlWheel(notches, {place.x(), place.y()}); });
    }

  private:
    void Paint(QPainter& painter, const QRect& exposed) {
        CDC dc(&painter, {exposed.left(), exposed.top(), exposed.left() + exposed.width(),
                          exposed.top() + exposed.height()});
        m_view.Paint(dc);
    }

    CView& m_view;
    CHoldDrag m_drag;
    int m_nWheel = 0;  // eighths of a degree that make no whole notch yet
};

}  // namespace

std::string AfxGetPointerMessage() {
    const QWidget* const window = g_pointer.window;
    if (!window) return {};
    const QWidget* const under = window->childAt(PixelAt(*window, g_pointer.place));
    const auto* const view = dynamic_cast<const ViewWidget*>(under);
    if (!view) return {};
    const QPoint place = PixelAt(*view, g_pointer.place);
    return view->GetView().GetPointerMessage({place.x(), place.y()});
}

CView::~CView() {
    if (m_pDocument) m_pDocument->RemoveView(this);
}

void CView::Create(CWnd& frame, CViewPlace& place, std::shared_ptr<CDocument> document) {
    Attach(new ViewWidget(*this, place), &frame);
    m_pPlace = &place;
    SetDocument(std::move(document));
}

void CView::SetDocument(std::shared_ptr<CDocument> document) {
    if (m_pDocument) m_pDocument->RemoveView(this);
    m_pDocument = std::move(document);
    m_pDocument->AddView(this);
}

CRect CView::GetClientRect() const {
    const CSize size = m_pPlace->GetViewSize();
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
    return AfxPreparePrinting(*this, *pInfo);
}

bool CView::Print(bool bDirect) {
    CPrintInfo info = {&AfxGetPrinter(), bDirect};
    if (!OnPreparePrinting(&info)) return false;
    AfxPrintPage(*this, info);
    return true;
}

void CView::OnFilePrint() {
    Print(false);
}

void CView::OnFilePrintDirect() {
    Print(true);
}

void CView::OnFilePrintPreview() {
    CPrintInfo info = {&AfxGetPrinter(), false, true};
    if (OnPreparePrinting(&info)) AfxPreviewPage(*this, info);
}

std::string CView::GetPrintTitle() const {
    return m_pDocument->GetTitle();
}

bool CView::VisitTargets(const Visitor& visit) {
    return CWnd::VisitTargets(visit) || m_pDocument->VisitTargets(visit);
}
