#include "framework/core/exception.h"

#include <cstring>

CFileException::CFileException(int nError) : CException(std::strerror(nError)), m_nError(nError) {}

CFileException::CFileException(const std::string& strOperation, int nError)
    : CException(strOperation + ": " + std::strerror(nError)), m_nError(nError) {}

CArchiveException::CArchiveException(Cause cause, std::string strFileName)
    : CException("It is no document of the kinds that this viewer reads"),
      m_cause(cause),
      m_strFileName(std::move(strFileName)) {}

void AfxThrowArchiveException(CArchiveException::Cause cause, const std::string& strFileName) {
    throw CArchiveException(cause, strFileName);
}

void AfxThrowMemoryException() {
    throw CMemoryException();
}
