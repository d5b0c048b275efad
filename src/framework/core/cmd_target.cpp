#include "framework/core/cmd_target.h"

const MessageMap CCmdTarget::s_messageMap = {nullptr, {}};

const MessageMap& CCmdTarget::GetMessageMap() const {
    return s_messageMap;
}

const MessageEntry* CCmdTarget::FindEntry(u32 nID, u32 nCode) const {
    for (const MessageMap* map = &GetMessageMap(); map; map = map->pBase)
        for (const MessageEntry& entry : map->entries)
            if (entry.nID == nID && entry.nCode == nCode) return &entry;
    return nullptr;
}

bool CCmdTarget::OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi) {
    const MessageEntry* const entry = FindEntry(nID, nCode);
    if (!entry) return false;
    if (!pUi) {
        entry->pCall(*this, nullptr);
        return true;
    }
    pUi->m_bContinueRouting = false;
    entry->pCall(*this, pUi);
    return !pUi->m_bContinueRouting;
}

bool CCmdTarget::HasHandler(u32 nID, u32 nCode) const {
    return FindEntry(nID, nCode) != nullptr;
}

void CCmdUI::DoUpdate(CCmdTarget& target, bool bDisableIfNoHandler) {
    if (target.OnCmdMsg(m_nID, CN_UPDATE_COMMAND_UI, this) || !bDisableIfNoHandler) return;
    Enable(target.HasHandler(m_nID, CN_COMMAND));
}
