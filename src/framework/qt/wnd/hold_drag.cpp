#include "framework/qt/wnd/hold_drag.h"

#include "framework/qt/wnd/view_place.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

CHoldDrag::CHoldDrag(QWidget& view, CViewPlace& place) : m_view(view), m_place(place) {}

void CHoldDrag::OnPress(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton || !m_place.IsLargerThanArea()) return;
    const QPoint place = event.position().toPoint();
    m_held = {place.x(), place.y()};
}

void CHoldDrag::OnMove(const QMouseEvent& event) {
    if (!m_held) return;
    // The button can be let go where nobody tells of it, as under a dialog.
    if (!(event.buttons() & Qt::LeftButton)) return End();
    const QPoint distance = QPoint(m_held->x, m_held->y) - event.position().toPoint();
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
    m_held.reset();
    if (m_bDragging) m_view.unsetCursor();
    m_bDragging = false;
}
