#include "framework/core/archive.h"

#include "framework/core/file.h"

u32 CArchive::Read(void* pData, u32 nCount) {
    return m_pFile->Read(pData, nCount);
}

void CArchive::Write(const void* pData, u32 nCount) {
    m_pFile->Write(pData, nCount);
}
