// A byte stream over the framework's archive and its file. The file is at most a byte less than 4 GiB long,
// which is as far as the stream's positions reach: a longer one sets BS_UNSUPPORTED at the first refill.
#pragma once

#include "iff/byte_stream.h"

#include <memory>
#include <optional>

class CArchive;
class CException;
class CFile;

class ArchiveByteStream final : public ByteStream {
  public:
    // The archive is borrowed until Close.
    ArchiveByteStream(CArchive* pArchive, u32 nBufferSize) : ByteStream(nBufferSize), m_pArchive(pArchive) {}

    // Leaves the archive at the stream's logical position and lets go of it.
    void Close();

    u32 GetRemaining() override;
    u8* AcquireWriteBuffer(u32* pLimit, u32 nSize) override;
    u8* AcquireReadBuffer(u32* pLimit, u32 nSize) override;
    void ReleaseWriteBuffer(u32 nCount) override;
    void ReleaseReadBuffer(u32 nCount) override;
    void WriteBlock(const void* pData, u32 nCount) override;
    u32 ReadBlock(void* pData, u32 nCount) override;
    u32 Tell() override;
    void Seek(u32 nPosition) override;
    u32 GetDataLength() override;

  private:
    CFile* FlushedFile();
    void NoteFault(u32 nStatus, const CException& exception);
    std::optional<u32> LengthOfFile();

    CArchive* m_pArchive;
    std::unique_ptr<u8[]> m_pBlock;  // behind the buffer handed out
    u32 m_nGot = 0;                  // bytes the archive delivered into the read buffer; 0 when none is held
    u32 m_nBlockStart = 0;           // source position of the read buffer's first byte
};
