#include "support/memory_file.h"

#include "framework/core/exception.h"

#include <algorithm>
#include <cstring>

u64 MemoryFile::GetLength() const {
    if (m_bThrowOnLength) throw CFileException("no length");
    return m_nClaimedLength != NEVER ? m_nClaimedLength : m_bytes.size();
}

u64 MemoryFile::Seek(i64 nOffset, SeekFrom from) {
    ++m_nSeeks;
    const u64 origin = from == begin ? 0 : from == current ? m_nPosition : GetLength();
    if (m_bThrowOnSeek || (nOffset < 0 && static_cast<u64>(-nOffset) > origin)) throw CFileException("no position");
    return m_nPosition = origin + static_cast<u64>(nOffset);
}

u32 MemoryFile::Read(void* pData, u32 nCount) {
    ++m_nReads;
    const u64 left = m_bytes.size() - std::min<u64>(m_bytes.size(), m_nPosition);
    const u32 count = static_cast<u32>(std::min<u64>(nCount, left));
    if (m_nPosition + count > m_nThrowAt) throw CFileException("broken");
    if (count > 0) std::memcpy(pData, m_bytes.data() + m_nPosition, count);
    m_nPosition += count;
    return count;
}

void MemoryFile::Write(const void* pData, u32 nCount) {
    if (m_bThrowOnWrite) throw CFileException("full");
    m_bytes.resize(std::max<u64>(m_bytes.size(), m_nPosition + nCount));
    if (nCount > 0) std::memcpy(m_bytes.data() + m_nPosition, pData, nCount);
    m_nPosition += nCount;
}

u32 CountingArchive::Read(void* pData, u32 nCount) {
    ++m_nCalls;
    return CArchive::Read(pData, nCount);
}

void CountingArchive::Flush() {
    ++m_nCalls;
    if (m_nFlushes++ >= m_nThrowAtFlush) throw CFileException("no flush");
}
