#include "iff/byte_stream.h"

#include <algorithm>

u8* ByteStream::AcquireWriteBuffer(u32* limit, u32) {
    *limit = 0;
    m_nStatus |= BS_UNSUPPORTED;
    return nullptr;
}

u8* ByteStream::AcquireReadBuffer(u32* limit, u32) {
    *limit = 0;
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
void ByteStream::ReadBlock(void*, u32) {
    m_nStatus |= BS_UNSUPPORTED;
}

bool ByteStream::Refill(u32 needed) {
    Sync();
    m_pReadBuffer = AcquireReadBuffer(&m_nLimit, m_nBufferSize);
    if (m_nLimit >= needed) return true;
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

void ByteStream::SetPosition(u32 position) {
    const u32 offset = position - Tell();
    if (offset > m_nLimit) {
        Sync();
        Seek(position);
    } else if (m_pReadBuffer) {
        m_nHighWater = std::max(m_nHighWater, m_nReadPos);
        m_nReadPos = offset;
    } else {
        m_nHighWater = std::max(m_nHighWater, m_nWritePos);
        m_nWritePos = offset;
    }
}
