// A view that is held with the left button and dragged scrolls the area around its frame, as a hand moves a
// sheet of paper. It takes more than a click, and a frame that is larger than the area.
#pragma once

#include "framework/core/geometry.h"

#include <optional>

class CViewPlace;
class QMouseEvent;
class QWidget;

class CHoldDrag {
  public:
    // Both outlive it.
    CHoldDrag(QWidget& view, CViewPlace& place);

    bool IsHeld() const { return m_held.has_value(); }

    void OnPress(const QMouseEvent& event);
    void OnMove(const QMouseEvent& event);
    void OnRelease(const QMouseEvent& event);

    // Lets the view go.
    void End();

  private:
    QWidget& m_view;
    CViewPlace& m_place;
    std::optional<CPoint> m_held;  // the view's point that stays under the pointer
    bool m_bDragging = false;
};
