#include "iff/iff_file.h"

#include "iff/container.h"
#include "iff/stream_archive.h"

bool IffFile::Load(ByteStream* stream) {
    const auto archive = CountedPtr<IffStreamArchive>::Adopt(new IffStreamArchive);
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
    // Here ids are compared exactly: four zero bytes would match anything.
    const bool outermost = m_RootId == ID_FORM || m_RootId == ID_LIST || m_RootId == ID_CAT;
    if (archive.HasFailed() || !outermost) {
        archive.SetFailed();
        return;
    }
    m_pRoot = CountedPtr<IffChunk>::Adopt(ReadChunk(ID_NULL, archive, m_RootId, true));
}
