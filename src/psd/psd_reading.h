// One document on its way in: the stream, the rules, what is being read and the first rule found broken.
#pragma once

#include "psd/field_reader.h"
#include "reading/finding.h"
#include "reading/reading_rules.h"

#include <string_view>

class PsdReading {
  public:
    // All three are borrowed.
    PsdReading(ByteStream& stream, const ReadingRules& rules, Finding& finding)
        : m_stream(stream), m_rules(rules), m_finding(finding) {}

    ByteStream& Stream() { return m_stream; }
    const ReadingRules& Rules() const { return m_rules; }

    // Says what is read from here on. An index or a channel holds until another one is given.
    void Enter(Place place) { m_place = place; }
    void EnterNth(Place place, u32 nIndex);
    void EnterChannel(Place place, u32 nChannel);
    void EnterRow(Place place, u32 nRow);

    // Whether the stream is in good state; if not, why is noted.
    bool IsGood();

    // The refusals note why, unless an earlier one has, and answer false. A source that has ended or failed
    // breaks no other rule: what was read of it are zeroes.
    bool Refuse(Rule rule, u32 nPosition, i64 nFound = 0, i64 nRead = 0);

    // For packed data that is known to be there, so that where the stream ends it was led beyond it.
    bool RefusePacked(Rule rule, u32 nPosition, i64 nFound);

    // For data that is too short, told before any of it was read: the stream is left in the state that
    // reading it would have left.
    bool RefuseShort();

    bool RefuseForMemory();

    // Moves on modulo 2^32; false where that leads beyond the data.
    bool SkipWithin(u32 count);

    // Reads a signature up to its first byte that differs.
    bool ReadSignature(std::string_view signature, Rule rule);

  private:
    bool IsNoted() const { return m_finding.rule != Rule::None; }
    void Note(Rule rule, u32 nPosition, i64 nFound, i64 nRead);
    void NotePlace();

    ByteStream& m_stream;
    const ReadingRules& m_rules;
    Finding& m_finding;
    Place m_place = Place::Signature;
    u32 m_nIndex = 0;
    u32 m_nChannel = 0;
    u32 m_nRow = 0;
};
