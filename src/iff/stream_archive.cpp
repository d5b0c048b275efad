#include "iff/stream_archive.h"

#include "base/wrapping.h"

#include <algorithm>
#include <limits>
#include <type_traits>
#include <utility>

namespace {

constexpr u32 SIZE_OF_SIZE = 4;  // bytes

// What is left of a chunk is counted in signed 32 bits.
constexpr u32 LARGEST_CHUNK = std::numeric_limits<i32>::max();

}  // namespace

// What the source throws while the stream is positioned reaches whoever closes the archive. Here it could
// only end the program: an archive that is still attached goes because of an exception already on its way.
IffStreamArchive::~IffStreamArchive() {
    try {
        Detach();
    } catch (...) {
    }
}

void IffStreamArchive::Attach(ByteStream* pStream) {
    m_pStream = CountedPtr<ByteStream>::Share(pStream);
    if (!pStream->IsGood()) {
        m_bFailed = true;
        m_noted.rule = Rule::NotAsked;
        m_pStream.Reset();
        return;
    }
    // The root archive is attached at position 0, where the bytes that remain are also where they end.
    m_nEnd = pStream->GetRemaining();
    m_nSize = m_nEnd;
    m_nRemaining = static_cast<i32>(m_nEnd);
    Enter(Place::OutermostId);
    FailOnBadStream();
}

void IffStreamArchive::Detach() {
    const CountedPtr<ByteStream> stream = std::move(m_pStream);
    if (stream) stream->SetPosition(m_nEnd);
}

// Without a stream the archive has failed, and so will the child.
IffStreamArchive::IffStreamArchive(IffStreamArchive& parent, u32 nStart, u32 nSize)
    : IffArchive(true, parent.GetDepth() + 1, parent.m_noted, parent.m_passedOver, parent.GetRules()),
      m_pStream(parent.m_pStream),
      m_nRemaining(static_cast<i32>(nSize)),
      m_nEnd(WrappingSum(nStart, nSize)),
      m_nSize(nSize),
      m_nSizeAt(nStart - SIZE_OF_SIZE) {}

IffArchive* IffStreamArchive::OpenChunk(u32 nSize) {
    const u32 start = m_pStream ? m_pStream->GetPosition() : 0;
    auto child = CountedPtr<IffStreamArchive>::Adopt(new IffStreamArchive(*this, start, nSize));
    if (nSize > LARGEST_CHUNK) {
        child->m_bFailed = true;
        Note(Rule::IffChunkSize, start - SIZE_OF_SIZE, nSize, LARGEST_CHUNK);
    }
    // The parent fails when it is transferred to again, or by whoever looks at what remains of it. What the
    // outermost chunk lacks at the file's end may be nothing that its classes read.
    const i32 held = m_nRemaining;
    TakeOff(nSize);
    if (m_nRemaining < 0 && GetDepth() > 0) Note(Rule::IffOverrun, start - SIZE_OF_SIZE, nSize, held);
    return child.Release();
}

void IffStreamArchive::CloseChunk(IffArchive* pChild) {
    const auto closed = CountedPtr<IffArchive>::Adopt(pChild);
    if (closed->HasFailed()) m_bFailed = true;
    closed->Detach();
}

void IffStreamArchive::RefuseChunk(Rule rule, i64 nFound, i64 nRead) {
    m_bFailed = true;
    Note(rule, m_nSizeAt, nFound, nRead);
}

void IffStreamArchive::RefuseField(u32 nBytes, Rule rule, i64 nFound, i64 nRead) {
    m_bFailed = true;
    Note(rule, m_pStream ? m_pStream->GetPosition() - nBytes : 0, nFound, nRead);
}

bool IffStreamArchive::Require(i64 nCount) {
    if (!m_bFailed && nCount > m_nRemaining) RefuseOverrun();
    if (!m_bFailed && (!m_pStream || nCount > i64{m_pStream->GetRemaining()})) RefuseEnd();
    return !m_bFailed;
}

bool IffStreamArchive::MayLackPadByte() {
    if (!GetRules().bPadByte || m_bFailed || !m_pStream) return false;
    const bool fileEnds = m_pStream->GetRemaining() == 0;
    if (m_nRemaining > 0 && !fileEnds) return false;
    // The container counts the byte that the file lacks.
    if (m_nRemaining > 0) TakeOff(1);
    m_passedOver.Add(Passed::PadByte);
    return true;
}

// A stream in bad state breaks no other rule: what was read of it are zeroes.
void IffStreamArchive::Note(Rule rule, u32 nPosition, i64 nFound, i64 nRead) {
    if (HasFinding()) return;
    m_noted.place = m_place;
    if (m_pStream && !m_pStream->IsGood()) {
        m_pStream->NoteState(m_noted);
        return;
    }
    m_noted.rule = rule;
    m_noted.nPosition = nPosition;
    m_noted.nFound = nFound;
    m_noted.nRead = nRead;
}

void IffStreamArchive::RefuseEnd() {
    m_bFailed = true;
    Note(Rule::DataEnds, m_pStream ? m_pStream->GetDataLength() : 0, 0, 0);
}

// For a transfer that leads beyond the archive's extent.
void IffStreamArchive::RefuseOverrun() {
    const bool inside = m_place == Place::ContainerType || m_place == Place::ChunkBody;
    if (GetDepth() > 0)
        RefuseChunk(inside ? Rule::IffChunkTooShort : Rule::IffContainerEnds, m_nSize, 0);
    else if (m_nSize > LARGEST_CHUNK)
        RefuseChunk(Rule::IffTooLarge, m_nSize, LARGEST_CHUNK);
    else
        RefuseEnd();
}

// Whether that many bytes may be moved; they are counted off first.
bool IffStreamArchive::Take(u32 nCount) {
    TakeOff(nCount);
    if (m_pStream && m_nRemaining >= 0) return true;
    RefuseOverrun();
    return false;
}

void IffStreamArchive::TakeOff(u32 nCount) {
    constexpr i64 LOWEST = std::numeric_limits<i32>::min();
    m_nRemaining = static_cast<i32>(std::max(i64{m_nRemaining} - i64{nCount}, LOWEST));
}

void IffStreamArchive::FailOnBadStream() {
    if (m_pStream && m_pStream->IsGood()) return;
    m_bFailed = true;
    Note(Rule::NotAsked, 0, 0, 0);
}

void IffStreamArchive::Transfer(IffId& value) {
    value = ID_NULL;
    if (!Take(sizeof(value.m_nValue))) return;
    m_pStream->GetBytes(reinterpret_cast<u8*>(&value.m_nValue), sizeof(value.m_nValue));
    FailOnBadStream();
}

template <typename Integer>
void IffStreamArchive::TransferInteger(Integer& value) {
    value = 0;
    if (!Take(sizeof(Integer))) return;
    std::make_unsigned_t<Integer> pattern = 0;
    for (u32 i = 0; i < sizeof(Integer); ++i) {
        u8 byte = 0;
        m_pStream->GetByte(byte);
        pattern = static_cast<std::make_unsigned_t<Integer>>(u64{pattern} << 8 | byte);
    }
    value = static_cast<Integer>(pattern);
    FailOnBadStream();
}

void IffStreamArchive::Transfer(u64& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(i64& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(u32& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(i32& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(u16& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(i16& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(u8& nValue) {
    TransferInteger(nValue);
}
void IffStreamArchive::Transfer(i8& nValue) {
    TransferInteger(nValue);
}

void IffStreamArchive::Transfer(IffRgb& value) {
    if (!Take(3)) return;
    m_pStream->GetByte(value.red);
    m_pStream->GetByte(value.green);
    m_pStream->GetByte(value.blue);
    FailOnBadStream();
}

void IffStreamArchive::TransferBytes(void* pData, u32 nCount) {
    if (!Take(nCount)) return;
    m_pStream->Sync();
    m_pStream->ReadBlock(pData, nCount);
    FailOnBadStream();
}
