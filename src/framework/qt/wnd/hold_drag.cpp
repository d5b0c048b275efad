#include "framework/qt/wnd/hold_drag.h"

#include "framework/qt/wnd/view_place.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

CHoldDrag::CHoldDrag(QWidget& view, CViewPlace& place) : m_view(view), m_place(place) {}

CHoldDrag::~CHoldDrag() = default;

void CHoldDrag::OnPress(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton || !m_place.IsLargerThanArea()) return;
    m_pHeld = std::make_unique<QPoint>(event.position().toPoint());
}

void CHoldDrag::OnMove(const QMouseEvent& event) {
    if (!m_pHeld) return;
    // The button can be let go where nobody tells of it, as under a dialog.
    if (!(event.buttons() & Qt::LeftButton)) return End();
    const QPoint distance = *m_pHeld - event.position().toPoint();
    if (!m_bDragging) {
        if (distance.manhattanLength() < QApplication::startDragDistance()) return;
        m_bDragging = true;
        m_view.setCursor(Qt::ClosedHandCursor);
    }
    m_place.ScrollArea({distance.x(), distance.y()});
}

void CHoldDrag::OnRelease(const QMouseEvent& event) {
    if (event.button() == Qt::LeftButton) End();
}

void CHoldDrag::End() {
    m_pHeld.reset();
    if (m_bDragging) m_view.unsetCursor();
    m_bDragging = false;
}
