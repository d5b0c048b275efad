#include "framework/core/exception.h"

#include "base/large_block.h"
#include "base/process_memory.h"

#include <cstdio>
#include <cstring>

MemoryText AfxMemoryText(const CMemoryException& exception) {
    MemoryText text = {"There is not enough memory"};
    const MemoryShortage shortage = ShortageOf(exception);
    if (shortage.IsOfLimit())
        std::snprintf(text.data(), text.size(),
                      "There is not enough memory. It takes %s; %s is left of the limit",
                      ToSizeText(shortage.nWanted).data(), ToSizeText(shortage.nLeft).data());
    return text;
}

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
