#include "iff/stream_archive.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

// What the source throws while the stream is positioned reaches whoever closes the archive. Here it could
// only end the program: an archive that is still attached goes because of an exception already on its way.
IffStreamArchive::~IffStreamArchive() {
    try {
        Detach();
    } catch (...) {
    }
}

void IffStreamArchive::Attach(ByteStream* stream) {
    m_pStream = CountedPtr<ByteStream>::Share(stream);
    if (!stream->IsGood()) {
        m_bFailed = true;
        m_pStream.Reset();
        return;
    }
    // The root archive is attached at position 0, where the bytes that remain are also where they end.
    m_nEnd = stream->GetRemaining();
    m_nRemaining = static_cast<i32>(m_nEnd);
    FailOnBadStream();
}

void IffStreamArchive::Detach() {
    const CountedPtr<ByteStream> stream = std::move(m_pStream);
    if (stream) stream->SetPosition(m_nEnd);
}

IffArchive* IffStreamArchive::OpenChunk(u32 size) {
    auto* const child = new IffStreamArchive(GetDepth() + 1);
    child->m_pStream = m_pStream;
    child->m_nRemaining = static_cast<i32>(size);
    child->m_nEnd = m_pStream ? m_pStream->GetPosition() + size : size;
    child->m_bFailed = child->m_nRemaining < 0;
    TakeOff(size);
    return child;
}

void IffStreamArchive::CloseChunk(IffArchive* child) {
    const auto closed = CountedPtr<IffArchive>::Adopt(child);
    if (closed->HasFailed()) m_bFailed = true;
    closed->Detach();
}

// Counts the bytes off before anything is moved; false when they overrun the chunk.
bool IffStreamArchive::TakeOff(u32 count) {
    constexpr i64 LOWEST = std::numeric_limits<i32>::min();
    m_nRemaining = static_cast<i32>(std::max(i64{m_nRemaining} - i64{count}, LOWEST));
    return m_nRemaining >= 0;
}

void IffStreamArchive::FailOnBadStream() {
    if (!m_pStream || !m_pStream->IsGood()) m_bFailed = true;
}

u32 IffStreamArchive::GetSourceRemaining() {
    return m_pStream ? m_pStream->GetRemaining() : 0;
}

void IffStreamArchive::Transfer(IffId& value) {
    value = ID_NULL;
    if (!m_pStream || !TakeOff(sizeof(value.m_nValue))) {
        m_bFailed = true;
        return;
    }
    m_pStream->GetBytes(reinterpret_cast<u8*>(&value.m_nValue), sizeof(value.m_nValue));
    FailOnBadStream();
}

template <typename Integer>
void IffStreamArchive::TransferInteger(Integer& value) {
    value = 0;
    if (!m_pStream || !TakeOff(sizeof(Integer))) {
        m_bFailed = true;
        return;
    }
    std::make_unsigned_t<Integer> pattern = 0;
    for (u32 i = 0; i < sizeof(Integer); ++i) {
        u8 byte = 0;
        m_pStream->GetByte(byte);
        pattern = static_cast<std::make_unsigned_t<Integer>>(u64{pattern} << 8 | byte);
    }
    value = static_cast<Integer>(pattern);
    FailOnBadStream();
}

void IffStreamArchive::Transfer(u64& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(i64& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(u32& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(i32& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(u16& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(i16& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(u8& value) {
    TransferInteger(value);
}
void IffStreamArchive::Transfer(i8& value) {
    TransferInteger(value);
}

void IffStreamArchive::Transfer(IffRgb& value) {
    if (!m_pStream || !TakeOff(3)) {
        m_bFailed = true;
        return;
    }
    m_pStream->GetByte(value.red);
    m_pStream->GetByte(value.green);
    m_pStream->GetByte(value.blue);
    FailOnBadStream();
}

void IffStreamArchive::TransferBytes(void* data, u32 count) {
    if (!m_pStream || !TakeOff(count)) {
        m_bFailed = true;
        return;
    }
    m_pStream->Sync();
    m_pStream->ReadBlock(data, count);
    FailOnBadStream();
}
