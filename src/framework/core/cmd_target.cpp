#include "framework/core/cmd_target.h"

const MessageMap CCmdTarget::s_messageMap = {nullptr, {}};

const MessageMap& CCmdTarget::GetMessageMap() const {
    return s_messageMap;
}

const MessageEntry* CCmdTarget::FindEntry(u32 nID, u32 nCode) const {
    for (const MessageMap* map = &GetMessageMap(); map; map = map->pBase)
        for (const MessageEntry& entry : map->entries)
            if (entry.nCode == nCode && entry.nFirstID <= nID && nID <= entry.nLastID) return &entry;
    return nullptr;
}

bool CCmdTarget::Handle(u32 nID, u32 nCode, CCmdUI* pUi) {
    const MessageEntry* const entry = FindEntry(nID, nCode);
    if (!entry) return false;
    if (pUi) pUi->m_bContinueRouting = false;
    entry->pCall(*this, nID, pUi);
    return !pUi || !pUi->m_bContinueRouting;
}

bool CCmdTarget::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    return VisitTargets([&](CCmdTarget& target) { return target.Handle(nID, nCode, pUi); });
}

bool CCmdTarget::HasHandler(u32 nID, u32 nCode) {
    return VisitTargets([&](CCmdTarget& target) { return target.FindEntry(nID, nCode) != nullptr; });
}

void CCmdUI::DoUpdate(CCmdTarget& target, bool bDisableIfNoHandler) {
    if (target.OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this) || !bDisableIfNoHandler) return;
    Enable(target.HasHandler(m_nID, CN_COMMAND));
}
