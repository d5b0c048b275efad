#include "tools/export/byte_sink.h"

#include "framework/core/disk_write.h"

#include <cstring>

bool ByteSink::Write(const void* pData, size_t nSize) {
    if (nSize > m_buffer.size() - m_nUsed && !Flush()) return false;
    if (nSize > m_buffer.size()) return WriteAll(m_nDescriptor, pData, nSize);
    std::memcpy(m_buffer.data() + m_nUsed, pData, nSize);
    m_nUsed += nSize;
    return true;
}

bool ByteSink::Flush() {
    const size_t size = m_nUsed;
    m_nUsed = 0;
    return WriteAll(m_nDescriptor, m_buffer.data(), size);
}
