#include "document/vistrel_doc.h"

#include "document/finding_text.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "iff/archive_byte_stream.h"

#include <cctype>

namespace {

constexpr u32 STREAM_BUFFER_SIZE = 1024;

bool LoadIff(CArchive& archive, IffFile& file, const ReadingRules& rules) {
    ArchiveByteStream stream(&archive, STREAM_BUFFER_SIZE);
    const bool accepted = file.Load(&stream, rules);
    stream.Close();
    return accepted;
}

// Whatever the file begins with.
bool IsOfTheSource(Rule rule) {
    return rule == Rule::SourceFailed || rule == Rule::SourceTooLarge;
}

// Nothing of the file is known.
bool LacksMemoryFromTheStart(const Finding& finding) {
    return finding.rule == Rule::NotEnoughMemory && finding.place == Place::Signature;
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

// What no other rules would change.
bool IsFinal(Rule rule) {
    return IsOfTheSource(rule) || rule == Rule::NotEnoughMemory;
}

std::string Sentence(const Finding& finding) {
    std::string text = RuleText(finding);
    text.front() = static_cast<char>(std::toupper(text.front()));
    return text;
}

}  // namespace

CVistrelDoc::Presence::~Presence() {
    --s_nOpen;
    if (s_nOpen == 0) LargeBlock::ReleaseKept();
}

bool CVistrelDoc::OnNewDocument() {
    CDocument::OnNewDocument();
    return false;
}

void CVistrelDoc::Serialize(CArchive& archive) {
    if (!archive.IsLoading()) return;
    m_pTolerantIff.reset();
    m_keptPassedOver.reset();
    m_strStrictReason.clear();
    m_bTolerantlyAccepted = false;
    bool accepted = false;
    if (m_tolerance == Tolerance::None || !archive.GetFile()) {
        accepted = Load(archive, STRICT);
        m_bStrictlyRefused = !accepted;
    } else {
        accepted = LoadUnderEitherRules(archive);
    }
    if (!accepted) AfxThrowArchiveException(CArchiveException::generic, archive.m_strFileName);
}

bool CVistrelDoc::LoadUnderEitherRules(CArchive& archive) {
    CFile& file = *archive.GetFile();
    const i64 start = static_cast<i64>(file.Seek(0, CFile::current));
    bool accepted = Load(archive, STRICT);
    m_bStrictlyRefused = !accepted;
    if (!accepted) {
        if (IsFinal(m_Psd.GetFinding().rule) || IsFinal(m_Iff.GetFinding().rule)) return false;
        const std::string strictReason = ReasonOfReaders();
        file.Seek(start, CFile::begin);
        accepted = Load(archive, TOLERANT);
        if (m_tolerance != Tolerance::Never) return accepted;
        m_nDocType = DOC_NONE;
        m_strStrictReason = strictReason;
        m_bTolerantlyAccepted = accepted;
        return false;
    }
    return m_nDocType != DOC_IFF || LoadOtherReading(archive, start);
}

// Of an IFF file that was read strictly. False where nothing of it is left to be shown.
bool CVistrelDoc::LoadOtherReading(CArchive& archive, i64 nStart) {
    const bool replaces = m_tolerance == Tolerance::Always;
    if (replaces) m_pRules = &TOLERANT;
    if (!m_Iff.HasForm(ID_PBM)) return true;
    archive.GetFile()->Seek(nStart, CFile::begin);
    if (!replaces) {
        LoadTolerantIff(archive);
        return true;
    }
    // Nobody asks for the strict tree any more, so that only one of the two has to find room.
    bool accepted = LoadIff(archive, m_Iff, TOLERANT);
    if (!accepted && !IsFinal(m_Iff.GetFinding().rule)) {
        archive.GetFile()->Seek(nStart, CFile::begin);
        accepted = LoadIff(archive, m_Iff, STRICT);
    }
    if (!accepted) m_nDocType = DOC_NONE;
    return accepted;
}

// Offers the file, from where the archive stands, to the two readers.
bool CVistrelDoc::Load(CArchive& archive, const ReadingRules& rules) {
    ArchiveByteStream stream(&archive, STREAM_BUFFER_SIZE);
    const u32 start = stream.GetPosition();
    m_pRules = &rules;
    m_nDocType = DOC_PSD;
    bool accepted = m_Psd.LoadPsd(&stream, rules);
    if (!accepted) {
        stream.SetPosition(start);
        m_nDocType = DOC_IFF;
        accepted = m_Iff.Load(&stream, rules);
        if (!accepted) m_nDocType = DOC_NONE;
    }
    stream.Close();
    return accepted;
}

// The file opens without it, too, where memory has no room for both.
void CVistrelDoc::LoadTolerantIff(CArchive& archive) {
    try {
        auto file = std::make_unique<IffFile>();
        if (LoadIff(archive, *file, TOLERANT)) m_pTolerantIff = std::move(file);
    } catch (const CMemoryException&) {
    }
}

const PassedOver& CVistrelDoc::GetPassedOver() const {
    return m_nDocType == DOC_PSD ? m_Psd.GetPassedOver() : m_Iff.GetPassedOver();
}

const IffFile& CVistrelDoc::GetIff(const ReadingRules& rules) const {
    return &rules == &TOLERANT && m_pTolerantIff ? *m_pTolerantIff : m_Iff;
}

void CVistrelDoc::KeepPassedOver(const PassedOver& passedOver) {
    m_keptPassedOver = passedOver;
    m_pTolerantIff.reset();
}

std::string CVistrelDoc::GetRefusalReason() const {
    std::string reason = m_strStrictReason.empty() ? ReasonOfReaders() : m_strStrictReason;
    if (!m_bTolerantlyAccepted) return reason;
    return reason + ". It could be read tolerantly (Reading/Tolerant, or --tolerant)";
}

std::string CVistrelDoc::ReasonOfReaders() const {
    const Finding& psd = m_Psd.GetFinding();
    const Finding& iff = m_Iff.GetFinding();
    for (const Finding* const finding : {&psd, &iff})
        if (IsOfTheSource(finding->rule) || LacksMemoryFromTheStart(*finding)) return Sentence(*finding);
    if (IsPhotoshop(psd)) return "The Photoshop reader " + FindingText(psd);
    return IsIff(iff) ? "The IFF reader " + FindingText(iff) : std::string();
}
