#include "document/vistrel_doc.h"

#include "document/finding_text.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "iff/archive_byte_stream.h"

#include <cctype>

namespace {

constexpr u32 STREAM_BUFFER_SIZE = 1024;

// Whatever the file begins with.
bool IsOfTheSource(Rule rule) {
    return rule == Rule::SourceFailed || rule == Rule::SourceTooLarge;
}

// A reader that got beyond the first bytes has found its own in them.
bool IsPhotoshop(const Finding& finding) {
    return finding.place != Place::Signature;
}

// The first bytes of a file that is too large for the IFF reader are not looked at.
bool IsIff(const Finding& finding) {
    if (finding.rule == Rule::None || finding.rule == Rule::NotAsked) return false;
    return finding.place != Place::OutermostId || finding.rule == Rule::IffTooLarge;
}

std::string Sentence(const Finding& finding) {
    std::string text = RuleText(finding);
    text.front() = static_cast<char>(std::toupper(text.front()));
    return text;
}

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

std::string CVistrelDoc::GetRefusalReason() const {
    const Finding& psd = m_Psd.GetFinding();
    const Finding& iff = m_Iff.GetFinding();
    for (const Finding* const finding : {&psd, &iff})
        if (IsOfTheSource(finding->rule)) return Sentence(*finding);
    if (IsPhotoshop(psd)) return "The Photoshop reader " + FindingText(psd);
    return IsIff(iff) ? "The IFF reader " + FindingText(iff) : std::string();
}
