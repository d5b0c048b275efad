// A view that is held with the left button and dragged scrolls the area around its frame, as a hand moves a
// sheet of paper. It takes more than a click, and a frame that is larger than the area.
#pragma once

#include <memory>

class CViewPlace;
class QMouseEvent;
class QPoint;
class QWidget;

class CHoldDrag {
  public:
    // Both outlive it.
    CHoldDrag(QWidget& view, CViewPlace& place);
    ~CHoldDrag();

    bool IsHeld() const { return m_pHeld != nullptr; }

    void OnPress(const QMouseEvent& event);
    void OnMove(const QMouseEvent& event);
    void OnRelease(const QMouseEvent& event);

  private:
    void End();

    QWidget& m_view;
    CViewPlace& m_place;
    std::unique_ptr<QPoint>
        m_pHeld;  // the view's point that stays under the pointer; none while nothing is held
    bool m_bDragging = false;
};
