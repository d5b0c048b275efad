#include "tools/export/byte_sink.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

bool ByteSink::Write(const void* pData, size_t nSize) {
    if (nSize > m_buffer.size() - m_nUsed && !Flush()) return false;
    if (nSize > m_buffer.size()) return WriteThrough(static_cast<const u8*>(pData), nSize);
    std::memcpy(m_buffer.data() + m_nUsed, pData, nSize);
    m_nUsed += nSize;
    return true;
}

bool ByteSink::Flush() {
    const size_t size = m_nUsed;
    m_nUsed = 0;
    return WriteThrough(m_buffer.data(), size);
}

bool ByteSink::WriteThrough(const u8* pData, size_t nSize) {
    while (nSize > 0) {
        const ssize_t count = write(m_nDescriptor, pData, nSize);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        pData += count;
        nSize -= static_cast<size_t>(count);
    }
    return true;
}
