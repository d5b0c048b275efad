// The area of the main window that the child windows stand in. It scrolls when one of them reaches beyond it.
#pragma once

#include "framework/qt/wnd/wnd.h"

#include <functional>

class CMDIChildWnd;
class QMainWindow;
class QMdiArea;
class QRect;

class CMDIClientWnd : public CWnd {
  public:
    // In the middle of the host, whose window this belongs to.
    void Create(QMainWindow& host, CWnd& frame);

    QMdiArea* GetArea() const;

    // How many captions below the area's corner the next child opens.
    int NextCascadeStep();

    // How much of the area there is to see at a time.
    CSize GetVisibleSize() const;

    // Has the toolkit arrange the windows in all of the area, which is at its beginning then.
    void ArrangeWindows(void (QMdiArea::*arrange)());

    // Scrolls no further than it takes. The rectangle is in client coordinates, which begin at what is
    // visible.
    void ScrollIntoView(const QRect& rect);

    // To the right and down, as far as it goes.
    void ScrollBy(const CSize& distance);

    // For when no child is left.
    void LeaveNothingToScroll();

    // What a child leaves to whoever holds it: the targets after it, and itself once it has been closed.
    std::function<bool(const Visitor&)> m_visitAfterChild;
    std::function<void(CMDIChildWnd&)> m_childClosed;

  protected:
    QWidget* GetClientWidget() const override;

  private:
    int m_nCascadeStep = 0;
};
