#include "iff/byte_stream.h"

#include "base/wrapping.h"

#include <algorithm>
#include <cerrno>
#include <limits>

u8* ByteStream::AcquireWriteBuffer(u32* pLimit, u32) {
    *pLimit = 0;
    m_nStatus |= BS_UNSUPPORTED;
    return nullptr;
}

u8* ByteStream::AcquireReadBuffer(u32* pLimit, u32) {
    *pLimit = 0;
    m_nStatus |= BS_UNSUPPORTED;
    return nullptr;
}

void ByteStream::ReleaseWriteBuffer(u32) {
    m_nStatus |= BS_UNSUPPORTED;
}
void ByteStream::ReleaseReadBuffer(u32) {
    m_nStatus |= BS_UNSUPPORTED;
}
void ByteStream::WriteBlock(const void*, u32) {
    m_nStatus |= BS_UNSUPPORTED;
}
u32 ByteStream::ReadBlock(void*, u32) {
    m_nStatus |= BS_UNSUPPORTED;
    return 0;
}

void ByteStream::NoteState(Finding& finding) {
    const u32 length = GetDataLength();  // a source that cannot tell has failed
    finding.nFound = m_nSourceError;
    if (m_nSourceError == EFBIG) {
        finding.rule = Rule::SourceTooLarge;
        finding.nRead = std::numeric_limits<u32>::max();
        finding.nPosition = 0;
    } else if ((m_nStatus & (BS_ERROR | BS_UNSUPPORTED)) != 0) {
        finding.rule = Rule::SourceFailed;
        finding.nPosition = GetPosition();
    } else {
        finding.rule = Rule::DataEnds;
        finding.nPosition = length;
    }
}

bool ByteStream::Refill(u32 nNeeded) {
    Sync();
    m_pReadBuffer = AcquireReadBuffer(&m_nLimit, m_nBufferSize);
    if (m_nLimit >= nNeeded) return true;
    m_nStatus |= BS_END;
    return false;
}

bool ByteStream::AcquireForWriting() {
    Sync();
    m_pWriteBuffer = AcquireWriteBuffer(&m_nLimit, m_nBufferSize);
    return m_nLimit >= 1;
}

void ByteStream::Sync() {
    if (m_pReadBuffer) {
        const u32 start = Tell();
        ReleaseReadBuffer(std::max(m_nReadPos, m_nHighWater));
        Seek(start + m_nReadPos);
        m_pReadBuffer = nullptr;
        m_nReadPos = 0;
    } else if (m_pWriteBuffer) {
        const u32 start = Tell();
        ReleaseWriteBuffer(std::max(m_nWritePos, m_nHighWater));
        Seek(start + m_nWritePos);
        m_pWriteBuffer = nullptr;
        m_nWritePos = 0;
    }
    m_nLimit = 0;
    m_nHighWater = 0;
}

void ByteStream::SetPosition(u32 nPosition) {
    const u32 offset = WrappingDifference(nPosition, Tell());
    if (offset > m_nLimit) {
        Sync();
        Seek(nPosition);
    } else if (m_pReadBuffer) {
        m_nHighWater = std::max(m_nHighWater, m_nReadPos);
        m_nReadPos = offset;
    } else {
        m_nHighWater = std::max(m_nHighWater, m_nWritePos);
        m_nWritePos = offset;
    }
}
