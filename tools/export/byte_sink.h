// Bytes on their way into an open file, gathered into large writes.
#pragma once

#include "base/types.h"

#include <array>
#include <cstddef>

class ByteSink {
  public:
    // The descriptor is borrowed.
    explicit ByteSink(int nDescriptor) : m_nDescriptor(nDescriptor) {}
    ByteSink(const ByteSink&) = delete;
    ByteSink& operator=(const ByteSink&) = delete;

    // False when the file did not take everything; errno says why. Nothing that follows makes it whole.
    bool Write(const void* pData, size_t nSize);
    bool Flush();

  private:
    int m_nDescriptor;
    size_t m_nUsed = 0;
    std::array<u8, 64 * 1024> m_buffer;
};
