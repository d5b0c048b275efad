// What a view asks of the frame around it.
#pragma once

#include "framework/core/geometry.h"

class CViewPlace {
  public:
    virtual ~CViewPlace() = default;

    // The size that the frame leaves to its view: its own less what borders and bars take. Negative where
    // these alone do not find room.
    virtual CSize GetViewSize() = 0;

    // Whether there is more of the frame than the area around it shows at a time.
    virtual bool IsLargerThanArea() const { return false; }

    // To the right and down, as far as the area goes.
    virtual void ScrollArea(const CSize& /*distance*/) {}
};
