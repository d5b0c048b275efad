#include "framework/core/archive.h"

#include "framework/core/file.h"

u32 CArchive::Read(void* pData, u32 nCount) {
    return m_pFile ? m_pFile->Read(pData, nCount) : 0;
}

void CArchive::Write(const void* pData, u32 nCount) {
    if (m_pFile) m_pFile->Write(pData, nCount);
}
