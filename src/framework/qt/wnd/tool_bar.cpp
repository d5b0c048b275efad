#include "framework/qt/wnd/tool_bar.h"

#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/picture.h"
#include "framework/qt/wnd/menu_bar.h"

#include <QAction>
#include <QIcon>
#include <QMainWindow>
#include <QToolBar>

bool CToolBar::Create(CBarFrame* pFrame, u32 nID) {
    auto* const bar = new QToolBar;
    pFrame->GetBarHost()->addToolBar(Qt::TopToolBarArea, bar);
    AttachBar(bar, pFrame, nID);
    return true;
}

bool CToolBar::LoadToolBar(u32 nIDResource) {
    const ToolBarResource* const resource = AfxFindToolBar(nIDResource);
    if (!resource) return false;
    auto* const bar = static_cast<QToolBar*>(GetWidget());
    auto* const frame = static_cast<CBarFrame*>(GetParent());
    bar->setIconSize({resource->size.cx, resource->size.cy});
    for (const u32 id : resource->items) {
        if (id == 0) {
            bar->addSeparator();
            continue;
        }
        QAction* const button = bar->addAction(AfxLoadIcon(id), ToDisplayText(AfxLoadTip(id)));
        button->setStatusTip(ToDisplayText(AfxLoadPrompt(id)));
        button->setData(id);
        QObject::connect(button, &QAction::triggered, bar,
                         [frame, id] { AfxGuardedCall([&] { frame->OnCmdMsg(id, CN_COMMAND, nullptr); }); });
    }
    return true;
}

void CToolBar::EnableDocking(u32 nDockStyle) {
    Qt::ToolBarAreas areas = Qt::NoToolBarArea;
    if (nDockStyle & CBRS_ALIGN_LEFT) areas |= Qt::LeftToolBarArea;
    if (nDockStyle & CBRS_ALIGN_TOP) areas |= Qt::TopToolBarArea;
    if (nDockStyle & CBRS_ALIGN_RIGHT) areas |= Qt::RightToolBarArea;
    if (nDockStyle & CBRS_ALIGN_BOTTOM) areas |= Qt::BottomToolBarArea;
    static_cast<QToolBar*>(GetWidget())->setAllowedAreas(areas);
}

void CToolBar::OnUpdateCmdUI(CBarFrame& frame) {
    for (QAction* const button : GetWidget()->actions())
        if (!button->isSeparator()) button->setEnabled(AfxIsCommandEnabled(frame, button->data().toUInt()));
}
