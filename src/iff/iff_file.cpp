#include "iff/iff_file.h"

#include "iff/container.h"
#include "iff/stream_archive.h"

bool IffFile::Load(ByteStream* stream, const ReadingRules& rules) {
    m_finding = Finding();
    const auto archive = CountedPtr<IffStreamArchive>::Adopt(new IffStreamArchive(m_finding, rules));
    archive->Attach(stream);
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
