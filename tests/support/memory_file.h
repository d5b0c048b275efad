// A file in memory that counts what reaches it and can be told to fail, and an archive that counts likewise.
#pragma once

#include "framework/core/archive.h"
#include "framework/core/file.h"
#include "support/byte_builder.h"

#include <limits>
#include <utility>

class MemoryFile final : public CFile {
  public:
    MemoryFile() = default;
    explicit MemoryFile(Bytes bytes) : m_bytes(std::move(bytes)) {}

    static constexpr u64 NEVER = std::numeric_limits<u64>::max();

    u64 GetLength() const override;
    u64 Seek(i64 nOffset, SeekFrom from) override;
    u32 Read(void* pData, u32 nCount) override;
    void Write(const void* pData, u32 nCount) override;

    Bytes m_bytes;
    u64 m_nClaimedLength = NEVER;  // what GetLength answers, if not the truth
    u64 m_nThrowAt = NEVER;        // reading a byte from here on throws
    bool m_bThrowOnSeek = false;
    bool m_bThrowOnLength = false;
    bool m_bThrowOnWrite = false;

    u64 m_nReads = 0;
    u64 m_nSeeks = 0;

  private:
    u64 m_nPosition = 0;
};

class CountingArchive final : public CArchive {
  public:
    using CArchive::CArchive;

    u32 Read(void* pData, u32 nCount) override;
    void Flush() override;

    u64 m_nCalls = 0;
    u64 m_nThrowAtFlush = MemoryFile::NEVER;  // flushes that succeed

  private:
    u64 m_nFlushes = 0;
};
