#include "document/vistrel_doc.h"

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "iff/archive_byte_stream.h"

namespace {

constexpr u32 STREAM_BUFFER_SIZE = 1024;

}  // namespace

bool CVistrelDoc::OnNewDocument() {
    CDocument::OnNewDocument();
    return false;
}

void CVistrelDoc::Serialize(CArchive& archive) {
    if (!archive.IsLoading()) return;
    ArchiveByteStream stream(&archive, STREAM_BUFFER_SIZE);
    const u32 start = stream.GetPosition();
    m_nDocType = DOC_PSD;
    bool accepted = m_Psd.LoadPsd(&stream);
    if (!accepted) {
        stream.SetPosition(start);
        m_nDocType = DOC_IFF;
        accepted = m_Iff.Load(&stream);
        if (!accepted) m_nDocType = DOC_NONE;
    }
    stream.Close();
    if (!accepted) AfxThrowArchiveException(CArchiveException::generic, archive.m_strFileName);
}
