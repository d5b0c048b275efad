#include "iff/archive_byte_stream.h"

#include "base/wrapping.h"
#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"

#include <cerrno>
#include <limits>

namespace {

constexpr u64 LONGEST_SOURCE = std::numeric_limits<u32>::max();

}  // namespace

void ArchiveByteStream::Close() {
    Sync();
    m_pArchive = nullptr;
}

u32 ArchiveByteStream::GetRemaining() {
    if (!FlushedFile()) return 0;
    const std::optional<u32> length = LengthOfFile();
    if (length) return WrappingDifference(*length, Tell() + m_nWritePos + m_nReadPos);
    m_nStatus |= BS_UNSUPPORTED;
    return 0;
}

u8* ArchiveByteStream::AcquireWriteBuffer(u32* pLimit, u32 nSize) {
    m_pBlock = std::make_unique_for_overwrite<u8[]>(nSize);
    *pLimit = nSize;
    return m_pBlock.get();
}

u8* ArchiveByteStream::AcquireReadBuffer(u32* pLimit, u32 nSize) {
    if (!m_pArchive) return ByteStream::AcquireReadBuffer(pLimit, nSize);
    // Noted now, so that moves inside the buffer need not ask the source where it stands.
    m_nBlockStart = Tell();
    LengthOfFile();
    m_pBlock = std::make_unique_for_overwrite<u8[]>(nSize);
    m_nGot = 0;
    try {
        m_nGot = m_pArchive->Read(m_pBlock.get(), nSize);
        if (m_nGot == 0) m_nStatus |= BS_SHORT;
    } catch (const CException& exception) {
        NoteFault(BS_ERROR, exception);
    }
    *pLimit = m_nGot;
    return m_pBlock.get();
}

void ArchiveByteStream::ReleaseWriteBuffer(u32 nCount) {
    WriteBlock(m_pBlock.get(), nCount);
    if (m_pArchive) m_pBlock.reset();
}

void ArchiveByteStream::ReleaseReadBuffer(u32 nCount) {
    CFile* const file = FlushedFile();
    if (!file) return;
    if (nCount != m_nGot) {
        try {
            file->Seek(i64{nCount} - i64{m_nGot}, CFile::current);
        } catch (const CException& exception) {
            NoteFault(BS_UNSUPPORTED, exception);
        }
    }
    m_nGot = 0;
    m_pBlock.reset();
}

void ArchiveByteStream::WriteBlock(const void* pData, u32 nCount) {
    if (!m_pArchive) {
        m_nStatus |= BS_UNSUPPORTED;
        return;
    }
    try {
        m_pArchive->Write(pData, nCount);
    } catch (const CException& exception) {
        NoteFault(BS_ERROR, exception);
    }
}

u32 ArchiveByteStream::ReadBlock(void* pData, u32 nCount) {
    if (!m_pArchive) {
        m_nStatus |= BS_UNSUPPORTED;
        return 0;
    }
    try {
        const u32 got = m_pArchive->Read(pData, nCount);
        if (got < nCount) m_nStatus |= BS_SHORT;
        return got;
    } catch (const CException& exception) {
        NoteFault(BS_ERROR, exception);
        return 0;
    }
}

u32 ArchiveByteStream::Tell() {
    if (m_nGot != 0) return m_nBlockStart;
    CFile* const file = FlushedFile();
    if (!file) return 0;
    try {
        const u64 position = file->Seek(0, CFile::current);
        if (position <= LONGEST_SOURCE) return static_cast<u32>(position);
        m_nStatus |= BS_UNSUPPORTED;
    } catch (const CException& exception) {
        NoteFault(BS_UNSUPPORTED, exception);
    }
    return 0;
}

void ArchiveByteStream::Seek(u32 nPosition) {
    CFile* const file = FlushedFile();
    if (!file) return;
    try {
        if (file->Seek(nPosition, CFile::begin) != nPosition) m_nStatus |= BS_UNSUPPORTED;
    } catch (const CException& exception) {
        NoteFault(BS_UNSUPPORTED, exception);
    }
}

u32 ArchiveByteStream::GetDataLength() {
    const std::optional<u32> length = m_pArchive ? LengthOfFile() : std::nullopt;
    if (length) return *length;
    m_nStatus |= BS_UNSUPPORTED;
    return 0;
}

// The archive's file, at the archive's logical position; null, and BS_UNSUPPORTED is set, where there is
// none. What Flush throws passes through.
CFile* ArchiveByteStream::FlushedFile() {
    CFile* file = nullptr;
    if (m_pArchive) {
        m_pArchive->Flush();
        file = m_pArchive->GetFile();
    }
    if (!file) m_nStatus |= BS_UNSUPPORTED;
    return file;
}

// The first failure is the one that is told.
void ArchiveByteStream::NoteFault(u32 nStatus, const CException& exception) {
    m_nStatus |= nStatus;
    const auto* const fault = dynamic_cast<const CFileException*>(&exception);
    if (fault && m_nSourceError == 0) m_nSourceError = fault->m_nError;
}

// Nothing where the file cannot tell. One that is longer than positions reach sets BS_UNSUPPORTED.
std::optional<u32> ArchiveByteStream::LengthOfFile() {
    try {
        const CFile* const file = m_pArchive->GetFile();
        const u64 length = file ? file->GetLength() : 0;
        if (length <= LONGEST_SOURCE) return static_cast<u32>(length);
        m_nStatus |= BS_UNSUPPORTED;
        m_nSourceError = EFBIG;
    } catch (const CException& exception) {
        NoteFault(0, exception);
    }
    return std::nullopt;
}
