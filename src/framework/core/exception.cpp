#include "framework/core/exception.h"

#include "base/large_block.h"
#include "base/process_memory.h"

#include <cstdio>
#include <cstring>

MemoryText AfxMemoryText(const CMemoryException& exception) {
    constexpr const char* NOT_ENOUGH_MEMORY = "There is not enough memory";
    MemoryText text;
    const MemoryShortage shortage = ShortageOf(exception);
    if (shortage.IsOfLimit())
        std::snprintf(text.data(), text.size(), "%s. %s", NOT_ENOUGH_MEMORY,
                      ToShortageText(shortage.nWanted, shortage.nLeft).data());
    else
        std::snprintf(text.data(), text.size(), "%s", NOT_ENOUGH_MEMORY);
    return text;
}

std::string AfxErrorText(int nError) {
    const char* const text = strerrordesc_np(nError);
    return text ? text : "Unknown error " + std::to_string(nError);
}

CFileException::CFileException(int nError) : CException(AfxErrorText(nError)), m_nError(nError) {}

CFileException::CFileException(const std::string& strOperation, int nError)
    : CException(strOperation + ": " + AfxErrorText(nError)), m_nError(nError) {}

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
