#include "framework/qt/wnd/tool_bar.h"

#include "framework/core/guarded_call.h"
#include "framework/core/resource.h"
#include "framework/qt/kit/convert.h"
#include "framework/qt/kit/picture.h"
#include "framework/qt/wnd/menu_bar.h"

#include <QAction>
#include <QIcon>
#include <QToolBar>

bool CToolBar::LoadToolBar(u32 nIDResource) {
    const ToolBarResource* const resource = AfxFindToolBar(nIDResource);
    if (!resource) return false;
    QToolBar* const bar = &GetBar();
    auto* const frame = GetFrame();
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

void CToolBar::OnUpdateCmdUI(CBarFrame& frame) {
    CDockingControlBar::OnUpdateCmdUI(frame);
    for (QAction* const button : GetWidget()->actions())
        if (!button->isSeparator()) button->setEnabled(AfxIsCommandEnabled(frame, button->data().toUInt()));
}
