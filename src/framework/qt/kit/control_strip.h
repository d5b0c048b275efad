// The controls of a dialog template on a bar that may be narrower than they are. They stand at the template's
// places while there is room. With less of it the lists shrink, down to a few letters; controls that then
// have no room are out of sight, and a button or the keys of these open all of them in a panel. In less room
// than the button needs only the keys do.
#pragma once

#include <functional>

class CCmdTarget;
class QWidget;
struct DialogResource;

// What the user does with the controls reaches the target. One that is given the keys by a key is scrolled
// to, or the strip where it has no room.
QWidget* AfxCreateControlStrip(const DialogResource& resource, CCmdTarget& target,
                               std::function<void(const QWidget&)> scrollTo);
