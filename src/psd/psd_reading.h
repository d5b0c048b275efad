// One document on its way in: the stream, the rules, what is being read, the end of the part it stands in,
// the first rule found broken and what was passed over.
#pragma once

#include "base/large_block.h"
#include "psd/field_reader.h"
#include "reading/finding.h"
#include "reading/passed_over.h"
#include "reading/reading_rules.h"

#include <string_view>

// Bytes that the data of a resource or of a layer's channel is below, where the rules do not let it be
// longer.
constexpr u32 PSD_PIECE_LIMIT = 1 << 24;

class PsdReading {
  public:
    // All are borrowed.
    PsdReading(ByteStream& stream, const ReadingRules& rules, Finding& finding, PassedOver& passedOver)
        : m_stream(stream), m_rules(rules), m_finding(finding), m_passedOver(passedOver) {}

    ByteStream& Stream() { return m_stream; }
    const ReadingRules& Rules() const { return m_rules; }

    // Says what is read from here on. An index or a channel holds until another one is given.
    void Enter(Place place) { m_place = place; }
    void EnterNth(Place place, u32 nIndex);
    void EnterChannel(Place place, u32 nChannel);
    void EnterRow(Place place, u32 nRow);

    // What the header says about the rest. A layer has another depth only where the rules let it.
    void SetVersion(u32 nVersion) { m_nVersion = nVersion; }
    bool IsVersion2() const { return m_nVersion == 2; }
    u32 LongestSide() const;
    void SetDepth(u32 nDepth) { m_nDepth = nDepth; }
    u32 Depth() const { return m_nDepth; }  // bits a sample, in the file
    void SetLayerDepth(u32 nDepth) { m_nLayerDepth = nDepth; }
    u32 LayerDepth() const { return m_nLayerDepth; }

    LengthField ReadLength() { return ReadLengthOf(4); }
    // Of what can be large, which version 2 gives eight bytes.
    LengthField ReadLargeLength() { return ReadLengthOf(LargeLengthSize()); }
    u32 LargeLengthSize() const { return IsVersion2() ? 8 : 4; }

    // Whether so many bytes stand between the position and the end of the part that is read, or of the data.
    // If not, nothing may be allocated for them.
    bool Holds(u64 nCount);

    // Likewise, and if not, why is noted.
    bool Require(u64 nCount) { return Holds(nCount) || RefuseShort(); }

    // Whether what was read has not passed the end of its part. Strictly no part has one.
    bool IsWithinPart();

    // Likewise for a field, before it is read. Strictly fields are read without asking.
    bool MayRead(u64 nCount) { return !m_rules.bBoundedParts || Require(nCount); }

    // Whether the stream is in good state; if not, why is noted.
    bool IsGood();

    // The refusals note why, unless an earlier one has, and answer false. A source that has ended or failed
    // breaks no other rule: what was read of it are zeroes.
    bool Refuse(Rule rule, u32 nPosition, i64 nFound = 0, i64 nRead = 0);

    // For data that is too short, told before any of it was read. Where no part ends before the data does,
    // the stream is left in the state that reading it would have left.
    bool RefuseShort();

    bool RefuseForMemory(const MemoryShortage& shortage);

    void PassOver(Passed what) { m_passedOver.Add(what); }

    // Whether a rule, one of Rules(), lets a file go on. If so, that is noted.
    bool Allows(bool bRule, Passed what);

    // Whether the rules can do without a part that was refused. If so, what it was refused for is forgotten.
    // Lack of memory and a failing source break no part.
    bool DoesWithout(bool bRule, Passed what);

    // Counts bytes of planes that were made before their compressed data broke, which a little of a file
    // makes many of. Compressed channels after them have so much less of the limit on memory, so that a file
    // takes no more time for being broken.
    void AddInVain(u64 nSize) { m_nInVain += nSize; }
    u64 InVain() const { return m_nInVain; }

    // Moves on modulo 2^32; false where that leads beyond the data, or the part.
    bool SkipWithin(u64 nCount);

    // Reads a signature up to its first byte that differs.
    bool ReadSignature(std::string_view signature, Rule rule);

  private:
    friend class PsdPart;

    LengthField ReadLengthOf(u32 nFieldSize);
    bool IsNoted() const { return m_finding.rule != Rule::None; }
    void Note(Rule rule, u32 nPosition, i64 nFound, i64 nRead);
    void NotePlace();

    ByteStream& m_stream;
    const ReadingRules& m_rules;
    Finding& m_finding;
    PassedOver& m_passedOver;
    const class PsdPart* m_pPart = nullptr;  // the innermost, borrowed; never any where parts are not bounded
    Place m_place = Place::Signature;
    u32 m_nIndex = 0;
    u32 m_nChannel = 0;
    u32 m_nRow = 0;
    u32 m_nVersion = 1;
    u32 m_nDepth = 8;
    u32 m_nLayerDepth = 8;
    u64 m_nInVain = 0;
};

// A part of the file that a length bounds, for as long as it is read. Where the rules do not bound parts, it
// bounds nothing.
class PsdPart {
  public:
    // nLength bytes from nStart on, of which those beyond the part around it are none of it.
    PsdPart(PsdReading& reading, u64 nStart, u64 nLength);
    PsdPart(PsdReading& reading, const LengthField& length)
        : PsdPart(reading, length.Start(), length.nLength) {}
    PsdPart(const PsdPart&) = delete;
    PsdPart& operator=(const PsdPart&) = delete;
    ~PsdPart();

    // Whether none of it lies beyond the part around it.
    bool Fits() const { return m_bFits; }

    // Skips what is left.
    void Leave();

    u64 End() const { return m_nEnd; }

  private:
    PsdReading& m_reading;
    const PsdPart* m_pOuter = nullptr;
    u64 m_nEnd = 0;
    bool m_bFits = true;
};
