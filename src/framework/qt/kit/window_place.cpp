#include "framework/qt/kit/window_place.h"

#include <QGuiApplication>

bool AfxPlacesWindows() {
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}
