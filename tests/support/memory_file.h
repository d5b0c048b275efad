// A file in memory that counts what reaches it and can be told to fail, and an archive that counts likewise.
#pragma once

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/byte_builder.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <utility>

struct MemoryFile final : public CFile {
    explicit MemoryFile(Bytes bytes = {}) : m_bytes(std::move(bytes)) {}

    u64 GetLength() const override {
        if (m_bBroken) throw CFileException("no length");
        return m_nClaimedLength != NEVER ? m_nClaimedLength : m_bytes.size();
    }
    u64 Seek(i64 nOffset, SeekFrom from) override {
        ++m_nSeeks;
        const u64 origin = from == begin ? 0 : from == current ? m_nPosition : GetLength();
        if (m_bBroken || (nOffset < 0 && static_cast<u64>(-nOffset) > origin)) throw CFileException("no position");
        return m_nPosition = origin + static_cast<u64>(nOffset);
    }
    u32 Read(void* pData, u32 nCount) override {
        ++m_nReads;
        const u64 left = m_bytes.size() - std::min<u64>(m_bytes.size(), m_nPosition);
        const u32 count = static_cast<u32>(std::min<u64>(nCount, left));
        if (m_nPosition + count > m_nThrowAt) throw CFileException("It cannot be read", EIO);
        std::copy_n(m_bytes.data() + (m_bytes.size() - left), count, static_cast<u8*>(pData));
        m_nPosition += count;
        return count;
    }
    void Write(const void* pData, u32 nCount) override {
        m_bytes.resize(std::max<u64>(m_bytes.size(), m_nPosition + nCount));
        std::copy_n(static_cast<const u8*>(pData), nCount, m_bytes.data() + m_nPosition);
        m_nPosition += nCount;
    }

    static constexpr u64 NEVER = std::numeric_limits<u64>::max();

    Bytes m_bytes;
    u64 m_nClaimedLength = NEVER;  // what GetLength answers, if not the truth
    u64 m_nThrowAt = NEVER;        // reading a byte from here on throws
    bool m_bBroken = false;        // asking where the file stands or ends throws
    u64 m_nReads = 0, m_nSeeks = 0;
    u64 m_nPosition = 0;
};

struct CountingArchive final : public CArchive {
    using CArchive::CArchive;

    u32 Read(void* pData, u32 nCount) override {
        ++m_nCalls;
        return CArchive::Read(pData, nCount);
    }
    void Flush() override {
        ++m_nCalls;
        const bool throws = m_bThrowOnce ? m_nFlushes == m_nThrowAtFlush : m_nFlushes >= m_nThrowAtFlush;
        ++m_nFlushes;
        if (throws) throw CFileException("no flush");
    }

    u64 m_nCalls = 0, m_nFlushes = 0;
    u64 m_nThrowAtFlush = MemoryFile::NEVER;  // flushes that succeed
    bool m_bThrowOnce = false;                // and those after it succeed again
};
