// The window of a bar that floats: a frame, a caption by which it is dragged, a button that closes it. Its
// sides can be dragged; its height follows what it holds.
#pragma once

#include <functional>

class QPoint;
class QSize;
class QWidget;

struct FloatingFrameEvents {
    // After a drag by the caption: where the pointer is on the screen, and where the frame's corner was
    // before. Not where the desktop moves windows by itself.
    std::function<void(const QPoint&, const QPoint&)> dropped;
    std::function<void()> doubleClicked;            // on the caption
    std::function<void(const QPoint&)> menuWanted;  // at this place on the screen
};

// Hidden; owned by the owner, over whose window it stays.
QWidget* AfxCreateFloatingFrame(QWidget& owner, FloatingFrameEvents events);

// The frame owns what it holds until that is taken away again. One that takes no keys leaves them to the
// window that has them.
void AfxFillFrame(QWidget& frame, QWidget* pContent, bool bTakesKeys);

// The size that the frame takes when it is filled with that.
QSize AfxFrameSizeFor(const QWidget& frame, const QWidget& content);

// The caption's middle, from the frame's corner.
QPoint AfxCaptionOf(const QWidget& frame);
