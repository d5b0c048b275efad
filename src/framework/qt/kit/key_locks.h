// The keys that lock. The toolkit does not tell how they stand; the state of the modifiers that comes with
// each key pressed does, and an X server when it is asked. Elsewhere they count as open until the first key.
#pragma once

#include "base/types.h"

class QKeyEvent;

// Learns from a key that went down.
void AfxTrackLocks(const QKeyEvent& key);

// Asks how they stand now, for nobody is told of keys that go down before his windows have the keyboard.
void AfxAskForLocks();

// nIDIndicator: ID_INDICATOR_CAPS, ID_INDICATOR_NUM or ID_INDICATOR_SCRL. Scroll lock is no modifier on most
// keyboards and counts as open there.
bool AfxIsLockOn(u32 nIDIndicator);
