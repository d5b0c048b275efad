#include "framework/qt/kit/dialog_owner.h"

#include <QApplication>
#include <QMainWindow>

QWidget* AfxGetDialogOwner() {
    if (QWidget* const dialog = QApplication::activeModalWidget()) return dialog;
    for (QWidget* const window : QApplication::topLevelWidgets())
        if (qobject_cast<QMainWindow*>(window)) return window;
    return nullptr;
}
