#include "psd/psd_reading.h"

#include "base/large_block.h"

#include <algorithm>

namespace {

// Rows or columns; version 1's is a matter of the rules.
constexpr u32 LONGEST_SIDE_OF_VERSION_2 = 300'000;

}  // namespace

void PsdReading::EnterNth(Place place, u32 nIndex) {
    m_place = place;
    m_nIndex = nIndex;
}

void PsdReading::EnterChannel(Place place, u32 nChannel) {
    m_place = place;
    m_nChannel = nChannel;
}

void PsdReading::EnterRow(Place place, u32 nRow) {
    m_place = place;
    m_nRow = nRow;
}

u32 PsdReading::LongestSide() const {
    return IsVersion2() ? LONGEST_SIDE_OF_VERSION_2 : m_rules.nLongestSide;
}

LengthField PsdReading::ReadLengthOf(u32 nFieldSize) {
    LengthField field;
    field.nAt = m_stream.GetPosition();
    field.nFieldSize = nFieldSize;
    field.nLength = nFieldSize == 8 ? ReadU64(m_stream) : ReadU32(m_stream);
    return field;
}

bool PsdReading::Holds(u64 nCount) {
    const u64 position = m_stream.GetPosition();
    const u64 end = m_pPart ? m_pPart->End() : m_stream.GetDataLength();
    return position <= end && nCount <= end - position;
}

bool PsdReading::IsWithinPart() {
    return !m_pPart || m_stream.GetPosition() <= m_pPart->End();
}

bool PsdReading::IsGood() {
    if (m_stream.IsGood()) return true;
    if (!IsNoted()) {
        NotePlace();
        m_stream.NoteState(m_finding);
    }
    return false;
}

bool PsdReading::Refuse(Rule rule, u32 nPosition, i64 nFound, i64 nRead) {
    if (IsGood()) Note(rule, nPosition, nFound, nRead);
    return false;
}

bool PsdReading::RefuseShort() {
    if (m_pPart) return Refuse(Rule::DataEnds, static_cast<u32>(m_pPart->End()));
    m_stream.m_nStatus |= BS_END;
    return IsGood();
}

bool PsdReading::RefuseForMemory(const MemoryShortage& shortage) {
    const u32 position = m_stream.GetPosition();
    if (!shortage.IsOfLimit()) return Refuse(Rule::NotEnoughMemory, position);
    return Refuse(Rule::NotEnoughMemory, position, static_cast<i64>(shortage.nWanted),
                  static_cast<i64>(shortage.nLeft));
}

bool PsdReading::Allows(bool bRule, Passed what) {
    if (bRule) PassOver(what);
    return bRule;
}

bool PsdReading::DoesWithout(bool bRule, Passed what) {
    if (!bRule || !m_stream.IsGood() || m_finding.rule == Rule::NotEnoughMemory) return false;
    m_finding = Finding();
    PassOver(what);
    return true;
}

bool PsdReading::SkipWithin(u64 nCount) {
    if (m_rules.bBoundedParts && !Holds(nCount)) return RefuseShort();
    Skip(m_stream, static_cast<u32>(nCount));
    return m_stream.GetPosition() <= m_stream.GetDataLength() || RefuseShort();
}

bool PsdReading::ReadSignature(std::string_view signature, Rule rule) {
    const u32 start = m_stream.GetPosition();
    for (const char c : signature) {
        if (ReadU8(m_stream) != static_cast<u8>(c)) return Refuse(rule, start);
    }
    return true;
}

void PsdReading::Note(Rule rule, u32 nPosition, i64 nFound, i64 nRead) {
    if (IsNoted()) return;
    NotePlace();
    m_finding.rule = rule;
    m_finding.nPosition = nPosition;
    m_finding.nFound = nFound;
    m_finding.nRead = nRead;
}

void PsdReading::NotePlace() {
    m_finding.place = m_place;
    m_finding.nIndex = m_nIndex;
    m_finding.nChannel = m_nChannel;
    m_finding.nRow = m_nRow;
}

PsdPart::PsdPart(PsdReading& reading, u64 nStart, u64 nLength)
    : m_reading(reading), m_pOuter(reading.m_pPart) {
    if (!reading.Rules().bBoundedParts) return;
    const u64 outerEnd = m_pOuter ? m_pOuter->m_nEnd : reading.Stream().GetDataLength();
    const u64 room = outerEnd - std::min(nStart, outerEnd);
    m_bFits = nStart <= outerEnd && nLength <= room;
    m_nEnd = m_bFits ? nStart + nLength : outerEnd;
    reading.m_pPart = this;
}

PsdPart::~PsdPart() {
    m_reading.m_pPart = m_pOuter;
}

void PsdPart::Leave() {
    if (m_reading.m_pPart == this) m_reading.Stream().SetPosition(static_cast<u32>(m_nEnd));
}
