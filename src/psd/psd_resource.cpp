#include "psd/psd_resource.h"

#include "psd/field_reader.h"

#include <cassert>
#include <cstring>
#include <new>

namespace {

// Sizes from here on do not occur in version 1.
constexpr u32 DATA_SIZE_LIMIT = 1 << 24;

PsdPtr<PsdResourceData> MakePayload(u32 id) {
    if (id == PSD_RESOURCE_ALPHA_NAMES) return MakePsdObject<PsdAlphaNamesData>();
    return MakePsdObject<PsdRawResourceData>();
}

}  // namespace

bool PsdRawResourceData::Read(ByteStream& stream, u32 size) {
    m_nSize = 0;
    m_pBytes.reset();
    if (!CanDeliver(stream, size)) return false;
    m_pBytes.reset(new (std::nothrow) u8[size]);
    if (!m_pBytes) return false;
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
    if (!CanDeliver(stream, size)) return false;
    m_Names.m_pBlock.reset(new (std::nothrow) char[size + 1]);
    if (!m_Names.m_pBlock) return false;
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
    m_Names.m_pOffsets.reset(new (std::nothrow) u32[count]);
    if (!m_Names.m_pOffsets) return false;
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

bool PsdResource::ReadResourceBlock(ByteStream& stream) {
    if (!Matches(stream, "8BIM")) return false;
    m_nId = ReadU16(stream);
    const u32 nameLength = ReadU8(stream);
    m_pszName = ReadName(stream, nameLength);
    if (!m_pszName) return false;
    // The length byte and the name fill an even number of bytes, and so does the payload.
    if (nameLength % 2 == 0) Skip(stream, 1);
    const u32 size = ReadU32(stream);
    if (size >= DATA_SIZE_LIMIT) return false;
    m_pData = MakePayload(m_nId);
    if (!m_pData || !m_pData->Read(stream, size)) return false;
    if (size % 2 == 1) Skip(stream, 1);
    return stream.IsGood();
}
