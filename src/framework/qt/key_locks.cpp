#include "framework/qt/key_locks.h"

#include "framework/core/resource.h"

#include <QGuiApplication>
#include <QKeyEvent>

namespace {

struct Lock {
    u32 nIDIndicator;
    int nKey;
    u32 nModifier;  // its bit where keyboards are described as X11 does it; 0 for none
    bool bOn;
};

Lock g_locks[] = {
    {ID_INDICATOR_CAPS, Qt::Key_CapsLock, 1 << 1, false},
    {ID_INDICATOR_NUM, Qt::Key_NumLock, 1 << 4, false},
    {ID_INDICATOR_SCRL, Qt::Key_ScrollLock, 0, false},
};

}  // namespace

// The modifiers are those from before the key; a lock opens when its key comes up, but that is settled
// already when it goes down.
void AfxTrackLocks(const QKeyEvent& key) {
    const QString platform = QGuiApplication::platformName();
    if (platform != QStringLiteral("xcb") && !platform.startsWith(QStringLiteral("wayland"))) return;
    for (Lock& lock : g_locks)
        if (lock.nModifier)
            lock.bOn = ((key.nativeModifiers() & lock.nModifier) != 0) != (key.key() == lock.nKey);
}

bool AfxIsLockOn(u32 nIDIndicator) {
    for (const Lock& lock : g_locks)
        if (lock.nIDIndicator == nIDIndicator) return lock.bOn;
    return false;
}
