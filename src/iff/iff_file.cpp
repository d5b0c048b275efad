#include "iff/iff_file.h"

#include "iff/container.h"
#include "iff/stream_archive.h"

namespace {

bool HoldsForm(const IffChunk* pChunk, IffId type) {
    const auto* const container = dynamic_cast<const IffContainer*>(pChunk);
    if (!container) return false;
    if (container->m_Id == ID_FORM && container->m_Type == type) return true;
    for (const IffChunkNode* node = container->m_pFirst; node; node = node->m_pNext)
        if (HoldsForm(node->m_pChunk.Get(), type)) return true;
    return false;
}

}  // namespace

bool IffFile::HasForm(IffId type) const {
    return HoldsForm(m_pRoot.Get(), type);
}

bool IffFile::Load(ByteStream* pStream, const ReadingRules& rules) {
    m_finding = Finding();
    m_passedOver = PassedOver();
    const auto archive =
        CountedPtr<IffStreamArchive>::Adopt(new IffStreamArchive(m_finding, m_passedOver, rules));
    archive->Attach(pStream);
    if (!archive->HasFailed()) Transfer(*archive);
    archive->Detach();
    return !archive->HasFailed();
}

void IffFile::Transfer(IffArchive& archive) {
    if (!archive.IsLoading()) {
        if (m_pRoot)
            WriteChunk(m_pRoot.Get(), archive);
        else
            archive.SetFailed();
        return;
    }
    m_pRoot.Reset();
    archive.Transfer(m_RootId);
    if (archive.HasFailed()) return;
    // Here ids are compared exactly: four zero bytes would match anything.
    if (m_RootId != ID_FORM && m_RootId != ID_LIST && m_RootId != ID_CAT) {
        archive.RefuseField(sizeof(m_RootId.m_nValue), Rule::IffOutermostId, m_RootId.m_nValue, 0);
        return;
    }
    m_pRoot = CountedPtr<IffChunk>::Adopt(ReadChunk(ID_NULL, archive, m_RootId, true));
}
