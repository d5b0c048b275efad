#include "psd/psd_resource.h"

#include "base/checked_size.h"
#include "psd/field_reader.h"
#include "psd/psd_reading.h"

#include <cassert>
#include <cstring>

namespace {

constexpr std::string_view SIGNATURE = "8BIM";
constexpr u32 HEAD_SIZE = 7;  // bytes from the signature to the length of the name

// Any four characters; bOwn says whether they are those of a resource.
bool ReadAnySignature(PsdReading& reading, bool& bOwn) {
    if (!reading.Require(HEAD_SIZE)) return false;
    const u32 start = reading.Stream().GetPosition();
    bOwn = true;
    for (const char expected : SIGNATURE) {
        const u32 c = ReadU8(reading.Stream());
        if (c < 0x20 || c > 0x7E) return reading.Refuse(Rule::PsdResourceSignature, start);
        bOwn = bOwn && c == static_cast<u8>(expected);
    }
    return true;
}

PsdPtr<PsdResourceData> MakePayload(u32 nId) {
    if (nId == PSD_RESOURCE_ALPHA_NAMES) return MakePsdObject<PsdAlphaNamesData>();
    return MakePsdObject<PsdRawResourceData>();
}

}  // namespace

bool PsdRawResourceData::Read(ByteStream& stream, u32 nSize) {
    m_nSize = 0;
    m_pBytes = LargeBlock();
    m_pBytes = LargeBlock::Allocate(nSize);
    m_nSize = nSize;
    ReadInto(stream, m_pBytes.Data(), nSize);
    return true;
}

bool PsdRawResourceData::Write(ByteStream& stream) const {
    if (!m_pBytes) return false;
    stream.Sync();
    stream.WriteBlock(m_pBytes.Data(), m_nSize);
    return stream.IsGood();
}

const char* PsdAlphaNamesData::NameList::GetAt(u32 nIndex) const {
    assert(nIndex < m_nCount);
    return Characters() + Offsets()[nIndex];
}

bool PsdAlphaNamesData::Read(ByteStream& stream, u32 nSize) {
    m_Names = NameList();
    if (nSize == 0) return true;
    m_Names.m_pBlock = LargeBlock::Allocate(u64{nSize} + 1);
    ReadInto(stream, m_Names.m_pBlock.Data(), nSize);
    return stream.IsGood() && Split(nSize);
}

// Makes the names in the block out of its nSize bytes; false when the last one passes their end.
bool PsdAlphaNamesData::Split(u32 nSize) {
    u8* const block = m_Names.m_pBlock.Data();
    u32 count = 0;
    u64 used = 0;
    for (; used < nSize; ++count) used += 1u + block[used];
    if (used != nSize) return false;
    m_Names.m_pOffsets = LargeBlock::Allocate(SizeProduct(count, sizeof(u32)));
    u32* const offsets = m_Names.Offsets();
    u32 lengthAt = 0;
    for (u32 i = 0; i < count; ++i) {
        offsets[i] = lengthAt + 1;
        const u32 next = lengthAt + 1 + block[lengthAt];
        block[lengthAt] = 0;  // ends the name before
        lengthAt = next;
    }
    block[nSize] = 0;
    m_Names.m_nCount = count;
    return true;
}

u32 PsdAlphaNamesData::GetSize() const {
    u32 size = 0;
    for (u32 i = 0; i < m_Names.GetCount(); ++i) size += static_cast<u32>(std::strlen(m_Names.GetAt(i))) + 1;
    return size;
}

bool PsdAlphaNamesData::Write(ByteStream& stream) const {
    for (u32 i = 0; i < m_Names.GetCount(); ++i) {
        const char* const name = m_Names.GetAt(i);
        stream.PutByte(static_cast<u8>(std::strlen(name)));
        for (const char* c = name; *c != 0; ++c) stream.PutByte(static_cast<u8>(*c));
        if (!stream.IsGood()) return false;
    }
    return true;
}

bool PsdResource::ReadResourceBlock(PsdReading& reading) {
    ByteStream& stream = reading.Stream();
    const ReadingRules& rules = reading.Rules();
    bool isOwn = true;
    if (!(rules.bResources ? ReadAnySignature(reading, isOwn)
                           : reading.ReadSignature(SIGNATURE, Rule::PsdResourceSignature)))
        return false;
    m_nId = ReadU16(stream);
    const u32 nameLength = ReadU8(stream);
    if (!reading.MayRead(nameLength)) return false;
    m_pszName = ReadName(stream, nameLength);
    // The length byte and the name fill an even number of bytes, and so does the payload.
    if (nameLength % 2 == 0) Skip(stream, 1);
    if (!reading.MayRead(sizeof(u32))) return false;
    const LengthField size = reading.ReadLength();
    if (size.nLength >= PSD_PIECE_LIMIT && !reading.Allows(rules.bLongPieces, Passed::LongPieces))
        return reading.Refuse(Rule::PsdResourceSize, size.nAt, static_cast<i64>(size.nLength),
                              PSD_PIECE_LIMIT);
    if (!reading.Require(size.nLength)) return false;
    m_pData = MakePayload(m_nId);
    if (!m_pData->Read(stream, static_cast<u32>(size.nLength)))
        return reading.Refuse(Rule::PsdAlphaNames, size.nAt, static_cast<i64>(size.nLength));
    if (size.nLength % 2 == 1) Skip(stream, 1);
    if (!reading.IsWithinPart()) return reading.RefuseShort();
    // One that ends the list counts as that.
    if (!isOwn) reading.PassOver(Passed::Resources);
    return reading.IsGood();
}
