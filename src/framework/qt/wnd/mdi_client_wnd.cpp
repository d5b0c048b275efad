#include "framework/qt/wnd/mdi_client_wnd.h"

#include <QMainWindow>
#include <QMdiArea>

// Captions that stand one below the other before the next child begins at the top again.
constexpr int CASCADE_STEPS = 10;

void CMDIClientWnd::Create(QMainWindow& host, CWnd& frame) {
    auto* const area = new QMdiArea;
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    host.setCentralWidget(area);
    Attach(area, &frame);
}

QMdiArea* CMDIClientWnd::GetArea() const {
    return static_cast<QMdiArea*>(GetWidget());
}

QWidget* CMDIClientWnd::GetClientWidget() const {
    return GetArea()->viewport();
}

int CMDIClientWnd::NextCascadeStep() {
    return m_nCascadeStep++ % CASCADE_STEPS;
}
