#include "psd/psd_reading.h"

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

bool PsdReading::RefusePacked(Rule rule, u32 nPosition, i64 nFound) {
    const bool sourceFailed = (m_stream.m_nStatus & ~(BS_END | BS_SHORT)) != 0;
    if (sourceFailed) return IsGood();
    Note(rule, nPosition, nFound, 0);
    return false;
}

bool PsdReading::RefuseShort() {
    m_stream.m_nStatus |= BS_END;
    return IsGood();
}

bool PsdReading::RefuseForMemory() {
    return Refuse(Rule::NotEnoughMemory, m_stream.GetPosition());
}

bool PsdReading::SkipWithin(u32 count) {
    Skip(m_stream, count);
    return Holds(m_stream, 0) || RefuseShort();
}

bool PsdReading::ReadSignature(std::string_view signature, Rule rule) {
    u32 read = 0;
    for (const char c : signature) {
        ++read;
        if (ReadU8(m_stream) != static_cast<u8>(c)) return Refuse(rule, m_stream.GetPosition() - read);
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
