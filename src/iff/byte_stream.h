// The byte source under both readers: a stretch of the source held in a buffer that is borrowed from the
// subclass, so that a byte costs two compares and an index. Status bits stick; once one is set, nothing read
// afterwards can be trusted. Positions and counts are 32 bits and wrap.
#pragma once

#include "base/types.h"
#include "reading/finding.h"

#include <cstring>

constexpr u32 BS_END = 0x01;          // a refill gave fewer bytes than the read needed
constexpr u32 BS_SHORT = 0x02;        // the source delivered nothing, or a block read came up short
constexpr u32 BS_UNSUPPORTED = 0x10;  // no source, no such operation, or positioning failed
constexpr u32 BS_ERROR = 0x20;        // the source failed while reading or writing

class ByteStream {
  public:
    // nBufferSize: bytes asked for at each refill. The creator owns the first reference.
    explicit ByteStream(u32 nBufferSize) : m_nBufferSize(nBufferSize) {}
    ByteStream(const ByteStream&) = delete;
    ByteStream& operator=(const ByteStream&) = delete;
    virtual ~ByteStream() = default;

    // Bytes from the logical position to the end of the data.
    virtual u32 GetRemaining() { return 0xFFFFFFFF; }

    // A buffer of nSize bytes to fill; pLimit receives its capacity.
    virtual u8* AcquireWriteBuffer(u32* pLimit, u32 nSize);

    // A buffer with up to nSize bytes of the source from its position on; pLimit receives how many.
    virtual u8* AcquireReadBuffer(u32* pLimit, u32 nSize);

    // Gives the buffer back: its first nCount bytes are to be written, or were consumed.
    virtual void ReleaseWriteBuffer(u32 nCount);
    virtual void ReleaseReadBuffer(u32 nCount);

    // Past the buffer: whoever calls them has called Sync before.
    virtual void WriteBlock(const void* pData, u32 nCount);

    // Returns the bytes delivered; fewer than nCount set BS_SHORT.
    virtual u32 ReadBlock(void* pData, u32 nCount);

    // The source's position: that of the first byte of the buffer held, or the plain one when none is held.
    virtual u32 Tell() = 0;
    virtual void Seek(u32 nPosition) = 0;

    // Bytes of the data from its start, or the furthest position where that is not known.
    virtual u32 GetDataLength() { return 0xFFFFFFFF; }

    void AddRef() { ++m_nRefs; }
    void Release() {
        if (--m_nRefs == 0) delete this;
    }

    // Reads one byte, or sets BS_END and leaves nByte as it was.
    void GetByte(u8& nByte) {
        if ((m_pReadBuffer && m_nReadPos < m_nLimit) || Refill(1)) nByte = m_pReadBuffer[m_nReadPos++];
    }

    // Copies nCount bytes, or none: when fewer can be had in one piece, BS_END is set and pOut stays as it
    // was. More than the buffer's size can never be had.
    void GetBytes(u8* pOut, u32 nCount) {
        if (nCount == 0) return;
        const bool held = m_pReadBuffer && u64{m_nReadPos} + nCount <= m_nLimit;
        if (!held && !Refill(nCount)) return;
        std::memcpy(pOut, m_pReadBuffer + m_nReadPos, nCount);
        m_nReadPos += nCount;
    }

    // Puts one byte into the write buffer, which it gets first where none is held.
    void PutByte(u8 nValue) {
        if ((m_pWriteBuffer && m_nWritePos < m_nLimit) || AcquireForWriting())
            m_pWriteBuffer[m_nWritePos++] = nValue;
    }

    // Gives the buffer held back and positions the source at the logical position.
    void Sync();

    u32 GetPosition() { return Tell() + m_nReadPos + m_nWritePos; }

    // Notes rule, position and what was found for what keeps the stream from going on: a source that is too
    // large or has failed, otherwise data that ends.
    void NoteState(Finding& finding);

    // A move inside the buffer, its end included, touches no source.
    void SetPosition(u32 nPosition);

    bool IsGood() const { return m_nStatus == 0; }

    u32 m_nStatus = 0;
    u32 m_nBufferSize;
    u8* m_pWriteBuffer = nullptr;  // at most one of the two is held
    u8* m_pReadBuffer = nullptr;
    u32 m_nReadPos = 0;    // bytes of the read buffer already consumed
    u32 m_nWritePos = 0;   // bytes of the write buffer already filled
    u32 m_nLimit = 0;      // bytes usable in the buffer held; 0 when none is held
    u32 m_nHighWater = 0;  // furthest cursor left behind by a step back; 0 after a refill
    i32 m_nRefs = 1;
    i32 m_nSourceError = 0;  // errno value of the source's first failure, EFBIG when it is too large; or 0

  private:
    bool Refill(u32 nNeeded);
    bool AcquireForWriting();
};
