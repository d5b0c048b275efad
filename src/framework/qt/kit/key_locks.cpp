#include "framework/qt/kit/key_locks.h"

#include "framework/core/resource.h"

#include <QGuiApplication>
#include <QKeyEvent>

#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace {

struct Lock {
    u32 nIDIndicator;
    int nKey;
    u32 nModifier;  // its bit where keyboards are described as X11 does it; 0 for none
    bool bOn;
};

using PointerReply = std::unique_ptr<xcb_query_pointer_reply_t, decltype(&std::free)>;

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

// What the server says of the pointer includes the modifiers, in one question. Where windows are only drawn
// in memory the toolkit has the interface, but no connection.
void AfxAskForLocks() {
    const auto* const x11 = qApp->nativeInterface<QNativeInterface::QX11Application>();
    xcb_connection_t* const server = x11 ? x11->connection() : nullptr;
    if (!server) return;
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
    const PointerReply reply(xcb_query_pointer_reply(server, xcb_query_pointer(server, root), nullptr),
                             &std::free);
    if (!reply) return;
    for (Lock& lock : g_locks) lock.bOn = (reply->mask & lock.nModifier) != 0;
}

bool AfxIsLockOn(u32 nIDIndicator) {
    for (const Lock& lock : g_locks)
        if (lock.nIDIndicator == nIDIndicator) return lock.bOn;
    return false;
}
