// A file in memory that counts what reaches it and can be told to fail, and an archive that counts likewise.
#pragma once

#include "framework/core/archive.h"
#include "framework/core/exception.h"
#include "framework/core/file.h"
#include "support/byte_builder.h"
#include "support/fault.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>
#include <utility>

struct MemoryFile final : public CFile {
    explicit MemoryFile(Bytes bytes = {}) : m_bytes(std::move(bytes)) {}

    u64 GetLength() const override { return Done(m_lengths, m_nClaimedLength.value_or(m_bytes.size())); }
    u64 Seek(i64 nOffset, SeekFrom from) override {
        const i64 position = static_cast<i64>(m_nPosition);
        const i64 origin = from == begin ? 0 : from == current ? position : std::ssize(m_bytes);
        if (nOffset < -origin) throw CFileException("no position");
        m_nPosition = static_cast<u64>(position + Done(m_seeks, origin + nOffset - position));
        return m_nPosition;
    }
    u32 Read(void* pData, u32 nCount) override {
        const u64 left = m_bytes.size() - std::min<u64>(m_bytes.size(), m_nPosition);
        const u32 count = static_cast<u32>(std::min<u64>(Done(m_reads, nCount), left));
        std::copy_n(m_bytes.data() + (m_bytes.size() - left), count, static_cast<u8*>(pData));
        m_nPosition += count;
        return count;
    }
    void Write(const void* pData, u32 nCount) override {
        m_bytes.resize(std::max<u64>(m_bytes.size(), m_nPosition + nCount));
        std::copy_n(static_cast<const u8*>(pData), nCount, m_bytes.data() + m_nPosition);
        m_nPosition += nCount;
    }

    bool IsStruck() const { return m_reads.bStruck || m_seeks.bStruck || m_lengths.bStruck; }

    Bytes m_bytes;
    std::optional<u64> m_nClaimedLength;  // what GetLength answers, if not the truth
    FaultyCall m_reads, m_seeks;
    mutable FaultyCall m_lengths;
    u64 m_nPosition = 0;

  private:
    // How much of what is asked for is done.
    template <typename Number>
    static Number Done(FaultyCall& call, Number nAsked) {
        if (!call.Strikes()) return nAsked;
        if (call.fault.way == Fault::Way::Throw) throw CFileException("It cannot be read", EIO);
        return call.fault.way == Fault::Way::Half ? nAsked / 2 : 0;
    }
};

struct CountingArchive final : public CArchive {
    using CArchive::CArchive;

    u32 Read(void* pData, u32 nCount) override {
        ++m_nCalls;
        return CArchive::Read(pData, nCount);
    }
    void Flush() override {
        ++m_nCalls;
        if (m_flushes.Strikes()) throw CFileException("no flush");
    }

    u64 m_nCalls = 0;
    FaultyCall m_flushes;
};
