// The controls of a dialog template on a bar that may be narrower than they are. They stand at the template's
// places while there is room. With less of it the lists shrink, down to a few letters; controls that then
// have no room are out of sight, where they keep their keys, and a button opens all of them in a panel. In
// less room than the button needs only the keys are left.
#pragma once

#include <functional>

class CCmdTarget;
class QWidget;
struct DialogResource;

// What the user does with the controls reaches the target. One that is given the keys by a key is scrolled
// to.
QWidget* AfxCreateControlStrip(const DialogResource& resource, CCmdTarget& target,
                               std::function<void(const QWidget&)> scrollTo);
