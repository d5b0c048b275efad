#include "psd/psd_resource.h"

#include "psd/field_reader.h"
#include "psd/psd_reading.h"

#include <cassert>
#include <cstring>

namespace {

PsdPtr<PsdResourceData> MakePayload(u32 id) {
    if (id == PSD_RESOURCE_ALPHA_NAMES) return MakePsdObject<PsdAlphaNamesData>();
    return MakePsdObject<PsdRawResourceData>();
}

}  // namespace

bool PsdRawResourceData::Read(ByteStream& stream, u32 size) {
    m_nSize = 0;
    m_pBytes.reset();
    m_pBytes = std::make_unique_for_overwrite<u8[]>(size);
    m_nSize = size;
    ReadInto(stream, m_pBytes.get(), size);
    return true;
}

bool PsdRawResourceData::Write(ByteStream& stream) const {
    if (!m_pBytes) return false;
    stream.Sync();
    stream.WriteBlock(m_pBytes.get(), m_nSize);
    return stream.IsGood();
}

const char* PsdAlphaNamesData::NameList::GetAt(u32 index) const {
    assert(index < m_nCount);
    return m_pBlock.get() + m_pOffsets[index];
}

bool PsdAlphaNamesData::Read(ByteStream& stream, u32 size) {
    m_Names = NameList();
    if (size == 0) return true;
    m_Names.m_pBlock = std::make_unique_for_overwrite<char[]>(size + 1);
    ReadInto(stream, m_Names.m_pBlock.get(), size);
    return stream.IsGood() && Split(size);
}

// Makes the names in the block out of its size bytes; false when the last one passes their end.
bool PsdAlphaNamesData::Split(u32 size) {
    char* const block = m_Names.m_pBlock.get();
    u32 count = 0;
    u32 used = 0;
    for (; used < size; ++count) used += 1u + static_cast<u8>(block[used]);
    if (used != size) return false;
    m_Names.m_pOffsets = std::make_unique_for_overwrite<u32[]>(count);
    u32 lengthAt = 0;
    for (u32 i = 0; i < count; ++i) {
        m_Names.m_pOffsets[i] = lengthAt + 1;
        const u32 next = lengthAt + 1 + static_cast<u8>(block[lengthAt]);
        block[lengthAt] = 0;  // ends the name before
        lengthAt = next;
    }
    block[size] = 0;
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
    if (!reading.ReadSignature("8BIM", Rule::PsdResourceSignature)) return false;
    m_nId = ReadU16(stream);
    const u32 nameLength = ReadU8(stream);
    m_pszName = ReadName(stream, nameLength);
    // The length byte and the name fill an even number of bytes, and so does the payload.
    if (nameLength % 2 == 0) Skip(stream, 1);
    const LengthField size = ReadLength(stream);
    const u32 limit = reading.Rules().nPieceLimit;
    if (size.nLength >= limit) return reading.Refuse(Rule::PsdResourceSize, size.nAt, size.nLength, limit);
    if (!Holds(stream, size.nLength)) return reading.RefuseShort();
    m_pData = MakePayload(m_nId);
    if (!m_pData->Read(stream, size.nLength))
        return reading.Refuse(Rule::PsdAlphaNames, size.nAt, size.nLength);
    if (size.nLength % 2 == 1) Skip(stream, 1);
    return reading.IsGood();
}
