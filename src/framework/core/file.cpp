#include "framework/core/file.h"

#include "framework/core/exception.h"

void CFile::Write(const void*, u32) {
    throw CFileException("The file can only be read");
}
